// SPDX-License-Identifier: MIT
// Single actions at run time, and the run that a node keeps.
#include "platform/scene/ActionState.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/scene/Node.h"

namespace platform {

ActionState::ActionState(double duration, const TimingFunction& timing)
    : duration_(duration), timing_(timing) {}

ActionState::~ActionState() = default;

void ActionState::advance(ActionContext& context, double local) {
    advanceInner(context, warp(std::clamp(local, 0.0, duration_)));
}

double ActionState::nextBlock() const {
    const double inner = nextBlockInner();
    return inner < kNever ? unwarp(inner) : kNever;
}

double ActionState::progress(double inner) const {
    return duration_ > 0.0 ? inner / duration_ : 1.0;
}

bool ActionState::isWarped() const {
    return !timing_.isLinear() && duration_ > 0.0 && duration_ < kNever;
}

double ActionState::warp(double local) const {
    return isWarped() ? duration_ * timing_(local / duration_) : local;
}

double ActionState::unwarp(double inner) const {
    if (!isWarped()) return inner;
    double low = 0.0, high = duration_;
    for (int i = 0; i < 60; ++i) {
        const double middle = 0.5 * (low + high);
        (warp(middle) < inner ? low : high) = middle;
    }
    return high;
}

void MoveState::begin(ActionContext& context) {
    base_ = written_ = context.node.position();
    progress_ = 0.0;
}

void MoveState::advanceInner(ActionContext& context, double inner) {
    if (context.node.position() != written_) base_ = context.node.position() - delta_ * progress_;
    progress_ = progress(inner);
    context.node.setPosition(base_ + delta_ * progress_);
    written_ = context.node.position();
}

void TurnState::begin(ActionContext& context) {
    base_ = written_ = context.node.orientation();
    progress_ = 0.0;
}

void TurnState::advanceInner(ActionContext& context, double inner) {
    if (context.node.orientation() != written_)
        base_ = context.node.orientation() * glm::conjugate(turn(angle_ * progress_, axis_));
    progress_ = progress(inner);
    context.node.setOrientation(base_ * turn(angle_ * progress_, axis_));
    written_ = context.node.orientation();
}

TurnToState::TurnToState(double duration, const TimingFunction& timing, const glm::dvec3& euler)
    : ActionState(duration, timing), target_(fromEuler(euler)) {}

void TurnToState::begin(ActionContext& context) {
    base_ = context.node.orientation();
}

void TurnToState::advanceInner(ActionContext& context, double inner) {
    context.node.setOrientation(alongShortestArc(base_, target_, progress(inner)));
}

void BlockState::advanceInner(ActionContext& context, double) {
    if (std::exchange(called_, true) || context.muted) return;
    block_(context.node);
}

void CustomState::advanceInner(ActionContext& context, double inner) {
    if (ended_) return;
    ended_ = inner >= duration();
    if (!context.muted) block_(context.node, inner);
}

ActionRun::ActionRun(const Action& action, std::string key)
    : state_(action.makeState()), key_(std::move(key)) {}

void ActionRun::enterScene(double time) {
    if (began_ == kNever) began_ = time;
}

bool ActionRun::isFinished(double time) const {
    return cancelled_ || time - began_ >= state_->duration();
}

void ActionRun::start(Node& node) {
    if (std::exchange(started_, true)) return;
    ActionContext context{node};
    state_->reset();
    state_->begin(context);
}

void ActionRun::skip(Node& node, double time) {
    ActionContext context{node};
    state_->skip(context, time - began_);
}

double ActionRun::nextBlock() const {
    return cancelled_ ? kNever : began_ + state_->nextBlock();
}

void ActionRun::fireNext(Node& node) {
    ActionContext context{node};
    state_->fireNext(context);
}

void ActionRun::advance(Node& node, double time) {
    if (cancelled_) return;
    ActionContext context{node};
    state_->advance(context, time - began_);
}

}  // namespace platform
