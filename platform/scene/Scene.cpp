// SPDX-License-Identifier: MIT
#include "platform/scene/Scene.h"

#include <algorithm>

#include "platform/scene/ActionState.h"

namespace platform {

namespace {

const Node* firstWithCamera(const Node& node) {
    if (node.camera()) return &node;
    for (const NodePtr& child : node.children()) {
        if (const Node* found = firstWithCamera(*child)) return found;
    }
    return nullptr;
}

}  // namespace

Scene::Scene() : root_(std::make_shared<Node>()) {
    root_->enter(&state_);
}

Scene::~Scene() {
    root_->enter(nullptr);
}

const Node* Scene::pointOfView() const {
    return firstWithCamera(*root_);
}

void Scene::advance(double sceneTime) {
    const double time = std::max(sceneTime, state_.time);
    refresh();
    skipWhatIsTooLate(time);
    while (happenNext(time)) {
    }
    state_.time = time;
    bringActionsTo(time, nullptr);
    for (const RunningParticles& running : particles_)
        running.system->removeDead(time);
    dropFinished();
}

void Scene::refresh() {
    if (collected_ == state_.revision) return;
    collected_ = state_.revision;
    actions_.clear();
    particles_.clear();
    collect(root_);
}

void Scene::collect(const NodePtr& node) {
    for (const auto& run : node->actions_) {
        run->start(*node);
        actions_.push_back({node, run});
    }
    if (node->particles_) particles_.push_back({node, node->particles_});
    for (const NodePtr& child : node->children_)
        collect(child);
}

void Scene::skipWhatIsTooLate(double time) {
    for (const RunningAction& running : actions_)
        running.run->skip(*running.node, time);
    for (const RunningParticles& running : particles_)
        running.system->skip(time);
}

bool Scene::happenNext(double time) {
    const RunningAction* action = nullptr;
    const RunningParticles* particles = nullptr;
    double next = time;
    for (const RunningAction& running : actions_) {
        const double block = running.run->nextBlock();
        if (block < next || (block == next && action == nullptr)) {
            next = block;
            action = &running;
        }
    }
    for (const RunningParticles& running : particles_) {
        const double birth = running.system->nextBirth();
        if (birth < next || (birth == next && action == nullptr && particles == nullptr)) {
            next = birth;
            particles = &running;
        }
    }
    if (action == nullptr && particles == nullptr) return false;
    state_.time = std::max(state_.time, next);
    if (particles != nullptr) {
        bringActionsTo(state_.time, nullptr);
        particles->system->giveBirth(particles->node->worldTransform());
    } else {
        callBlock(*action, state_.time);
    }
    refresh();
    return true;
}

void Scene::callBlock(const RunningAction& action, double time) {
    bringActionsTo(time, action.run.get());
    if (!action.run->isCancelled()) action.run->fireNext(*action.node);
}

void Scene::bringActionsTo(double time, const ActionRun* except) {
    for (const RunningAction& running : actions_) {
        if (running.run.get() != except && running.node->scene_ == &state_)
            running.run->advance(*running.node, time);
    }
}

void Scene::dropFinished() {
    for (const RunningAction& running : actions_)
        running.node->dropFinishedActions(state_.time);
}

}  // namespace platform
