// SPDX-License-Identifier: MIT
// Composite actions at run time: sequence, group and repeat.
#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/scene/ActionState.h"
#include "platform/scene/Node.h"

namespace platform {

// --- sequence ---

SequenceState::SequenceState(double duration, std::vector<ActionStatePtr> children)
    : ActionState(duration, TimingFunction::linear()), children_(std::move(children)) {
    double start = 0.0;
    for (const ActionStatePtr& child : children_) {
        starts_.push_back(start);
        start += child->duration();
    }
}

void SequenceState::reset() {
    present_ = 0;
    for (const ActionStatePtr& child : children_)
        child->reset();
}

void SequenceState::begin(ActionContext& context) {
    if (!children_.empty()) children_.front()->begin(context);
}

void SequenceState::goOn(ActionContext& context) {
    children_[present_]->advance(context, children_[present_]->duration());
    if (++present_ < children_.size()) children_[present_]->begin(context);
}

void SequenceState::advanceInner(ActionContext& context, double inner) {
    const bool ending = inner >= duration();
    while (present_ < children_.size()) {
        ActionState& child = *children_[present_];
        const double local = inner - starts_[present_];
        if (local < child.duration() && !ending) {
            child.advance(context, local);
            return;
        }
        goOn(context);
    }
}

double SequenceState::nextBlockInner() const {
    for (std::size_t i = present_; i < children_.size(); ++i) {
        const double block = starts_[i] + children_[i]->nextBlock();
        if (block < kNever) return block;
    }
    return kNever;
}

void SequenceState::fireNext(ActionContext& context) {
    while (present_ < children_.size() && children_[present_]->nextBlock() == kNever)
        goOn(context);
    if (present_ < children_.size()) children_[present_]->fireNext(context);
}

void SequenceState::skipInner(ActionContext& context, double inner) {
    if (present_ < children_.size()) children_[present_]->skip(context, inner - starts_[present_]);
}

// --- group ---

GroupState::GroupState(double duration, const TimingFunction& timing,
                       std::vector<ActionStatePtr> children)
    : ActionState(duration, timing), children_(std::move(children)) {}

void GroupState::reset() {
    for (const ActionStatePtr& child : children_)
        child->reset();
}

void GroupState::begin(ActionContext& context) {
    for (const ActionStatePtr& child : children_)
        child->begin(context);
}

void GroupState::advanceInner(ActionContext& context, double inner) {
    for (const ActionStatePtr& child : children_)
        child->advance(context, inner);
}

double GroupState::nextBlockInner() const {
    double next = kNever;
    for (const ActionStatePtr& child : children_)
        next = std::min(next, child->nextBlock());
    return next;
}

void GroupState::fireNext(ActionContext& context) {
    const auto next = std::min_element(
        children_.begin(), children_.end(),
        [](const auto& a, const auto& b) { return a->nextBlock() < b->nextBlock(); });
    if (next == children_.end()) return;
    const double at = (*next)->nextBlock();
    for (const ActionStatePtr& child : children_) {
        if (child != *next && child->nextBlock() > at) child->advance(context, at);
    }
    (*next)->fireNext(context);
}

void GroupState::skipInner(ActionContext& context, double inner) {
    for (const ActionStatePtr& child : children_)
        child->skip(context, inner);
}

// --- repeat ---

RepeatState::RepeatState(const TimingFunction& timing, ActionStatePtr child)
    : ActionState(kNever, timing), child_(std::move(child)) {
    child_->reset();
    firstBlock_ = child_->nextBlock();
}

void RepeatState::reset() {
    cycle_ = 0.0;
    child_->reset();
}

void RepeatState::begin(ActionContext& context) {
    child_->begin(context);
}

void RepeatState::endCycle(ActionContext& context) {
    child_->advance(context, child_->duration());
    cycle_ += 1.0;
    child_->reset();
    child_->begin(context);
}

void RepeatState::advanceInner(ActionContext& context, double inner) {
    const double length = child_->duration();
    if (length <= 0.0) return endCycle(context);
    while (inner >= (cycle_ + 1.0) * length)
        endCycle(context);
    child_->advance(context, inner - cycle_ * length);
}

double RepeatState::nextBlockInner() const {
    const double length = child_->duration();
    if (length <= 0.0) return kNever;
    const double block = child_->nextBlock();
    if (block < kNever) return cycle_ * length + block;
    return (cycle_ + 1.0) * length + firstBlock_;
}

void RepeatState::fireNext(ActionContext& context) {
    if (child_->nextBlock() == kNever) endCycle(context);
    child_->fireNext(context);
}

void RepeatState::skipInner(ActionContext& context, double inner) {
    const double length = child_->duration();
    if (length <= 0.0) return;
    const double tooMany = std::floor(inner / length) - cycle_ - kMaxCatchUpCycles;
    // Three cycles run in full to learn what one cycle does.
    if (tooMany > 3.0) leaveOutCycles(context, tooMany);
    child_->skip(context, inner - cycle_ * length);
}

void RepeatState::leaveOutCycles(ActionContext& context, double count) {
    Node& node = context.node;
    ActionContext muted{node, true};
    endCycle(muted);
    endCycle(muted);
    const glm::dvec3 position = node.position();
    const glm::dquat orientation = node.orientation();
    endCycle(muted);

    // All cycles turn by the same rotation, or all end in the same orientation.
    const double more = count - 3.0;
    const glm::dquat turned = glm::conjugate(orientation) * node.orientation();
    node.setPosition(node.position() + (node.position() - position) * more);
    if (glm::length(glm::dvec3(turned.x, turned.y, turned.z)) > 1e-12)
        node.setOrientation(node.orientation() * power(turned, more));
    cycle_ += more;
    child_->reset();
    child_->begin(muted);
}

}  // namespace platform
