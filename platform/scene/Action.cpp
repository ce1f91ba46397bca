// SPDX-License-Identifier: MIT
#include "platform/scene/Action.h"

#include <algorithm>
#include <utility>

#include <glm/geometric.hpp>

#include "platform/scene/ActionState.h"
#include "platform/time/Require.h"

namespace platform {

struct Action::Description {
    double duration;
    TimingFunction timing;
    StateMaker make;
};

Action::Action(std::shared_ptr<const Description> description)
    : description_(std::move(description)) {}

Action Action::make(double duration, StateMaker maker) {
    require(duration >= 0.0);
    return Action(std::make_shared<const Description>(
        Description{duration, TimingFunction::linear(), std::move(maker)}));
}

ActionStatePtr Action::makeState() const {
    return description_->make(description_->timing);
}

std::vector<ActionStatePtr> Action::makeStates(const std::vector<Action>& actions,
                                               const TimingFunction& common) {
    std::vector<ActionStatePtr> states;
    states.reserve(actions.size());
    for (const Action& action : actions) {
        const TimingFunction& own = action.description_->timing;
        states.push_back(action.description_->make(own.isLinear() ? common : own));
    }
    return states;
}

double Action::duration() const {
    return description_->duration;
}

Action Action::timed(const TimingFunction& function) const {
    return Action(std::make_shared<const Description>(
        Description{description_->duration, function, description_->make}));
}

Action Action::rotateBy(const glm::dvec3& angles, double duration) {
    return rotate(glm::length(angles), angles, duration);
}

Action Action::rotate(double angle, const glm::dvec3& axis, double duration) {
    return make(duration, [=](const TimingFunction& timing) {
        return std::make_unique<TurnState>(duration, timing, angle, axis);
    });
}

Action Action::rotateTo(const glm::dvec3& euler, double duration) {
    return make(duration, [=](const TimingFunction& timing) {
        return std::make_unique<TurnToState>(duration, timing, euler);
    });
}

Action Action::moveBy(const glm::dvec3& delta, double duration) {
    return make(duration, [=](const TimingFunction& timing) {
        return std::make_unique<MoveState>(duration, timing, delta);
    });
}

Action Action::wait(double duration) {
    return make(duration, [=](const TimingFunction& timing) {
        return std::make_unique<WaitState>(duration, timing);
    });
}

Action Action::run(std::function<void(Node&)> block) {
    return make(0.0, [block = std::move(block)](const TimingFunction& timing) {
        return std::make_unique<BlockState>(timing, block);
    });
}

Action Action::custom(double duration, std::function<void(Node&, double)> block) {
    return make(duration, [=, block = std::move(block)](const TimingFunction& timing) {
        return std::make_unique<CustomState>(duration, timing, block);
    });
}

Action Action::sequence(std::vector<Action> actions) {
    double duration = 0.0;
    for (const Action& action : actions)
        duration += action.duration();
    return make(duration, [=, actions = std::move(actions)](const TimingFunction& timing) {
        return std::make_unique<SequenceState>(duration, makeStates(actions, timing));
    });
}

Action Action::group(std::vector<Action> actions) {
    double duration = 0.0;
    for (const Action& action : actions)
        duration = std::max(duration, action.duration());
    return make(duration, [=, actions = std::move(actions)](const TimingFunction& timing) {
        return std::make_unique<GroupState>(duration, timing,
                                            makeStates(actions, TimingFunction::linear()));
    });
}

Action Action::repeatForever(const Action& action) {
    if (action.duration() == kNever) return action;
    return make(kNever, [action](const TimingFunction& timing) {
        return std::make_unique<RepeatState>(timing, action.makeState());
    });
}

}  // namespace platform
