// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <glm/vec3.hpp>

#include "platform/animation/TimingFunction.h"

namespace platform {

class ActionState;
class Node;

// The most cycles of a repeated action that one advance runs singly. In a later
// frame (over an hour later for a cycle of 0.08 s), earlier cycles happen as
// motion only: their blocks are not called.
inline constexpr double kMaxCatchUpCycles = 50'000.0;

// A description of a node's motion over time: immutable and cheap to copy; many
// nodes may share one. Seconds, radians. Main thread.
//
// Motion is computed from where the action began, not from frame to frame. The
// motion thus neither drifts nor depends on the frame rate. Where other code writes
// the same property meanwhile, the motion goes on from the written value.
class Action {
  public:
    // A steady turn about the vector `angles` in the node's own frame, by the
    // vector's length: the sum of per-frame increments about all three local axes.
    [[nodiscard]] static Action rotateBy(const glm::dvec3& angles, double duration);

    // A turn about an axis of the node's own frame; the axis may have any length.
    [[nodiscard]] static Action rotate(double angle, const glm::dvec3& axis, double duration);

    // A turn to these Euler angles along the shortest arc.
    [[nodiscard]] static Action rotateTo(const glm::dvec3& euler, double duration);

    // A move in the parent's space.
    [[nodiscard]] static Action moveBy(const glm::dvec3& delta, double duration);

    [[nodiscard]] static Action wait(double duration);

    // Runs `block` in the frame in which its time falls, once per passing,
    // however late that frame is. The whole scene then stands at that time. The
    // block may change the tree and its actions.
    [[nodiscard]] static Action run(std::function<void(Node&)> block);

    // Calls `block` in every frame, and at the end, with the seconds since the action began.
    [[nodiscard]] static Action custom(double duration,
                                       std::function<void(Node&, double elapsed)> block);

    [[nodiscard]] static Action sequence(std::vector<Action> actions);
    [[nodiscard]] static Action group(std::vector<Action> actions);

    // A cycle of zero duration happens once per frame.
    [[nodiscard]] static Action repeatForever(const Action& action);

    // The same action with this timing over its progress. A sequence passes the timing on to
    // each of its steps that has none of its own. No effect on an endless action.
    [[nodiscard]] Action timed(const TimingFunction& function) const;

    // Infinity for an endless action.
    [[nodiscard]] double duration() const;

  private:
    friend class ActionRun;
    struct Description;
    using StateMaker = std::function<std::unique_ptr<ActionState>(const TimingFunction&)>;
    explicit Action(std::shared_ptr<const Description> description);

    static Action make(double duration, StateMaker maker);
    static std::vector<std::unique_ptr<ActionState>> makeStates(const std::vector<Action>& actions,
                                                                const TimingFunction& common);
    [[nodiscard]] std::unique_ptr<ActionState> makeState() const;

    std::shared_ptr<const Description> description_;
};

}  // namespace platform
