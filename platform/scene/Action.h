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

// How many cycles of a repeated action one advance runs one by one. Of a frame
// that is later than that (over an hour for a cycle of 0.08 s), the cycles before
// happen as motion only: their blocks are not called.
inline constexpr double kMaxCatchUpCycles = 50'000.0;

// What a node is to do over time: a description that never changes and is cheap
// to copy. Any number of nodes may run one and the same. Seconds, radians.
//
// Motion is worked out from where the action began, not from frame to frame, so
// that it neither drifts nor depends on the frame rate. Where something else
// writes the same property meanwhile, the motion goes on from what was written.
class Action {
  public:
    // A steady turn about the axis `angles` of the node's own frame, by its
    // length: what increments about all three local axes at once add up to.
    [[nodiscard]] static Action rotateBy(const glm::dvec3& angles, double duration);

    // About an axis of the node's own frame, of any length.
    [[nodiscard]] static Action rotate(double angle, const glm::dvec3& axis, double duration);

    // To these Euler angles along the shortest arc.
    [[nodiscard]] static Action rotateTo(const glm::dvec3& euler, double duration);

    // In the parent's space.
    [[nodiscard]] static Action moveBy(const glm::dvec3& delta, double duration);

    [[nodiscard]] static Action wait(double duration);

    // Runs in the frame in which its time falls, once per passing, however late
    // that frame is; the whole scene then stands at that time. The block may
    // change the tree and its actions.
    [[nodiscard]] static Action run(std::function<void(Node&)> block);

    // Called in every frame, and at the end, with the seconds since it began.
    [[nodiscard]] static Action custom(double duration,
                                       std::function<void(Node&, double elapsed)> block);

    [[nodiscard]] static Action sequence(std::vector<Action> actions);
    [[nodiscard]] static Action group(std::vector<Action> actions);

    // A cycle of no length happens once per frame.
    [[nodiscard]] static Action repeatForever(const Action& action);

    // The same with this timing over its progress. A sequence passes the timing on
    // to each of its steps that has none of its own. No effect on what never ends.
    [[nodiscard]] Action timed(const TimingFunction& function) const;

    // Infinity for what never ends.
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
