// SPDX-License-Identifier: MIT
// An action under way on one node; private to platform/scene.
#pragma once

#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include <glm/gtc/quaternion.hpp>
#include <glm/vec3.hpp>

#include "platform/animation/TimingFunction.h"
#include "platform/scene/Action.h"

namespace platform {

inline constexpr double kNever = std::numeric_limits<double>::infinity();

struct ActionContext {
    Node& node;
    bool muted = false;  // motion only: blocks are not called
};

// Local times are seconds since the action began, before its timing function;
// inner times are local times after it. A state is made once; a repeating
// action begins it anew in every cycle without allocating.
class ActionState {
  public:
    ActionState(double duration, const TimingFunction& timing);
    virtual ~ActionState();
    ActionState(const ActionState&) = delete;
    ActionState& operator=(const ActionState&) = delete;

    [[nodiscard]] double duration() const { return duration_; }

    // Forgets all progress.
    virtual void reset() {}
    // Starts from the node's present pose; call after reset().
    virtual void begin(ActionContext&) {}
    // Goes to a local time not before the last; a time beyond the end means the end.
    void advance(ActionContext& context, double local);
    // The local time of the first block not yet called; kNever without such a block.
    [[nodiscard]] double nextBlock() const;
    // Goes to exactly that block and calls it.
    virtual void fireNext(ActionContext&) {}
    // Leaves out the cycles that are too far behind `local` to run singly.
    void skip(ActionContext& context, double local) { skipInner(context, warp(local)); }

  protected:
    virtual void advanceInner(ActionContext& context, double inner) = 0;
    [[nodiscard]] virtual double nextBlockInner() const { return kNever; }
    virtual void skipInner(ActionContext&, double) {}
    // Progress from 0 to 1; always 1 for an action of zero duration.
    [[nodiscard]] double progress(double inner) const;

  private:
    [[nodiscard]] bool isWarped() const;
    [[nodiscard]] double warp(double local) const;
    // The first local time whose inner time is at least `inner`.
    [[nodiscard]] double unwarp(double inner) const;

    double duration_;
    TimingFunction timing_;
};

using ActionStatePtr = std::unique_ptr<ActionState>;

class WaitState final : public ActionState {
  public:
    using ActionState::ActionState;

  private:
    void advanceInner(ActionContext&, double) override {}
};

class MoveState final : public ActionState {
  public:
    MoveState(double duration, const TimingFunction& timing, const glm::dvec3& delta)
        : ActionState(duration, timing), delta_(delta) {}
    void begin(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;

    glm::dvec3 delta_;
    glm::dvec3 base_{0.0};     // the node's position at the beginning
    glm::dvec3 written_{0.0};  // the position last written
    double progress_ = 0.0;    // the progress at that write
};

class TurnState final : public ActionState {
  public:
    TurnState(double duration, const TimingFunction& timing, double angle, const glm::dvec3& axis)
        : ActionState(duration, timing), angle_(angle), axis_(axis) {}
    void begin(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;

    double angle_;
    glm::dvec3 axis_;
    glm::dquat base_{1.0, 0.0, 0.0, 0.0};
    glm::dquat written_{1.0, 0.0, 0.0, 0.0};
    double progress_ = 0.0;
};

class TurnToState final : public ActionState {
  public:
    TurnToState(double duration, const TimingFunction& timing, const glm::dvec3& euler);
    void begin(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;

    glm::dquat target_;
    glm::dquat base_{1.0, 0.0, 0.0, 0.0};
};

class BlockState final : public ActionState {
  public:
    BlockState(const TimingFunction& timing, std::function<void(Node&)> block)
        : ActionState(0.0, timing), block_(std::move(block)) {}
    void reset() override { called_ = false; }
    void fireNext(ActionContext& context) override { advanceInner(context, 0.0); }

  private:
    void advanceInner(ActionContext& context, double inner) override;
    [[nodiscard]] double nextBlockInner() const override { return called_ ? kNever : 0.0; }

    std::function<void(Node&)> block_;
    bool called_ = false;
};

class CustomState final : public ActionState {
  public:
    CustomState(double duration, const TimingFunction& timing,
                std::function<void(Node&, double)> block)
        : ActionState(duration, timing), block_(std::move(block)) {}
    void reset() override { ended_ = false; }

  private:
    void advanceInner(ActionContext& context, double inner) override;

    std::function<void(Node&, double)> block_;
    bool ended_ = false;
};

// Runs its children one after the other.
class SequenceState final : public ActionState {
  public:
    SequenceState(double duration, std::vector<ActionStatePtr> children);
    void reset() override;
    void begin(ActionContext& context) override;
    void fireNext(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;
    [[nodiscard]] double nextBlockInner() const override;
    void skipInner(ActionContext& context, double inner) override;
    // Ends the present child and begins the next.
    void goOn(ActionContext& context);

    std::vector<ActionStatePtr> children_;
    std::vector<double> starts_;
    std::size_t present_ = 0;  // the number of children once all have ended
};

// Runs its children all at once.
class GroupState final : public ActionState {
  public:
    GroupState(double duration, const TimingFunction& timing, std::vector<ActionStatePtr> children);
    void reset() override;
    void begin(ActionContext& context) override;
    void fireNext(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;
    [[nodiscard]] double nextBlockInner() const override;
    void skipInner(ActionContext& context, double inner) override;

    std::vector<ActionStatePtr> children_;
};

class RepeatState final : public ActionState {
  public:
    RepeatState(const TimingFunction& timing, ActionStatePtr child);
    void reset() override;
    void begin(ActionContext& context) override;
    void fireNext(ActionContext& context) override;

  private:
    void advanceInner(ActionContext& context, double inner) override;
    [[nodiscard]] double nextBlockInner() const override;
    void skipInner(ActionContext& context, double inner) override;
    void endCycle(ActionContext& context);
    // Turns and moves the node by `count` more cycles, each like the cycle just
    // run.
    void leaveOutCycles(ActionContext& context, double count);

    ActionStatePtr child_;
    double firstBlock_;   // of a fresh cycle
    double cycle_ = 0.0;  // cycles that have ended
};

// A running action as its node owns it. Scene times.
class ActionRun {
  public:
    ActionRun(const Action& action, std::string key);

    [[nodiscard]] const std::string& key() const { return key_; }

    // Sets the starting time; only the first call counts.
    void enterScene(double time);
    void cancel() { cancelled_ = true; }
    [[nodiscard]] bool isCancelled() const { return cancelled_; }
    [[nodiscard]] bool isFinished(double time) const;

    // Begins the action from the node's present pose; only the first call counts.
    void start(Node& node);
    void skip(Node& node, double time);
    [[nodiscard]] double nextBlock() const;
    void fireNext(Node& node);
    void advance(Node& node, double time);

  private:
    ActionStatePtr state_;
    std::string key_;
    double began_ = kNever;
    bool started_ = false;
    bool cancelled_ = false;
};

}  // namespace platform
