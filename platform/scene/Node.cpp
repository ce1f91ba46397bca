// SPDX-License-Identifier: MIT
#include "platform/scene/Node.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "platform/scene/ActionState.h"
#include "platform/scene/Scene.h"
#include "platform/time/Require.h"

namespace platform {

struct Node::RunningAnimation {
    NodeAnimation animation;
    std::string key;
    double began = kNever;  // scene time
};

Node::Node(GeometryPtr geometry) : geometry_(std::move(geometry)) {}

Node::~Node() {
    removeAllChildren();
}

// --- the tree ---

void Node::addChild(NodePtr child) {
    for (const Node* node = this; node != nullptr; node = node->parent_)
        require(node != child.get());
    child->removeFromParent();
    child->parent_ = this;
    if (scene_ != nullptr) child->enter(scene_);
    children_.push_back(std::move(child));
}

void Node::removeFromParent() {
    if (parent_ == nullptr) return;
    auto& siblings = std::exchange(parent_, nullptr)->children_;
    const auto place = std::find_if(siblings.begin(), siblings.end(),
                                    [this](const NodePtr& node) { return node.get() == this; });
    // Shared until the end: the parent may hold the last reference.
    const NodePtr self = std::move(*place);
    siblings.erase(place);
    enter(nullptr);
}

void Node::removeAllChildren() {
    for (const NodePtr& child : children_) {
        child->parent_ = nullptr;
        child->enter(nullptr);
    }
    children_.clear();
}

NodePtr Node::find(std::string_view name) const {
    for (const NodePtr& child : children_) {
        if (child->name_ == name) return child;
        if (NodePtr found = child->find(name)) return found;
    }
    return {};
}

void Node::touchScene() {
    if (scene_ != nullptr) ++scene_->revision;
}

void Node::enter(SceneState* scene) {
    touchScene();
    scene_ = scene;
    touchScene();
    if (scene != nullptr) {
        for (const auto& run : actions_)
            run->enterScene(scene->time);
        for (RunningAnimation& running : animations_)
            running.began = std::min(running.began, scene->time);
        if (particles_) particles_->begin(scene->time);
    }
    for (const NodePtr& child : children_)
        child->enter(scene);
}

// --- the place ---

void Node::setOrientation(const glm::dquat& orientation) {
    pose_.orientation = glm::normalize(orientation);
    euler_.reset();
}

glm::dvec3 Node::eulerAngles() const {
    return euler_ ? *euler_ : toEuler(pose_.orientation);
}

void Node::setEulerAngles(const glm::dvec3& angles) {
    setOrientation(fromEuler(angles));
    euler_ = angles;
}

void Node::rotate(double angle, const glm::dvec3& axis) {
    setOrientation(pose_.orientation * turn(angle, axis));
}

void Node::lookAt(const glm::dvec3& worldTarget) {
    const glm::dmat4 world = worldTransform();
    const glm::dvec3 direction = worldTarget - positionOf(world);
    if (glm::length(direction) == 0.0) return;
    const glm::dvec3 up = orientationOf(world) * glm::dvec3(0.0, 1.0, 0.0);
    const glm::dquat parent = parent_ != nullptr ? orientationOf(parent_->worldTransform())
                                                 : glm::dquat(1.0, 0.0, 0.0, 0.0);
    setOrientation(glm::conjugate(parent) * facing(direction, up));
}

glm::dmat4 Node::worldTransform() const {
    glm::dmat4 result = localTransform();
    for (const Node* node = parent_; node != nullptr; node = node->parent_)
        result = node->localTransform() * result;
    return result;
}

// --- what stands there ---

void Node::setParticles(std::shared_ptr<ParticleSystem> particles) {
    if (particles_ == particles) return;
    particles_ = std::move(particles);
    if (particles_ && scene_ != nullptr) particles_->begin(scene_->time);
    touchScene();
}

// --- motion ---

void Node::runAction(const Action& action, std::string key) {
    if (!key.empty()) removeAction(key);
    actions_.push_back(std::make_shared<ActionRun>(action, std::move(key)));
    if (scene_ != nullptr) actions_.back()->enterScene(scene_->time);
    touchScene();
}

void Node::removeAction(std::string_view key) {
    const auto gone = std::find_if(actions_.begin(), actions_.end(),
                                   [key](const auto& run) { return run->key() == key; });
    if (gone == actions_.end()) return;
    (*gone)->cancel();
    actions_.erase(gone);
    touchScene();
}

bool Node::hasAction(std::string_view key) const {
    return std::any_of(actions_.begin(), actions_.end(),
                       [key](const auto& run) { return run->key() == key; });
}

void Node::dropFinishedActions(double sceneTime) {
    if (std::erase_if(actions_, [=](const auto& run) { return run->isFinished(sceneTime); }) > 0)
        touchScene();
}

void Node::addAnimation(NodeAnimation animation, std::string key) {
    removeAnimation(key);
    animations_.push_back(
        {std::move(animation), std::move(key), scene_ != nullptr ? scene_->time : kNever});
}

void Node::removeAnimation(std::string_view key) {
    std::erase_if(animations_, [key](const auto& running) { return running.key == key; });
}

const NodeAnimation* Node::animation(std::string_view key) const {
    for (const RunningAnimation& running : animations_) {
        if (running.key == key) return &running.animation;
    }
    return nullptr;
}

Pose Node::shownPose(double sceneTime) const {
    Pose pose = pose_;
    for (const RunningAnimation& running : animations_) {
        const auto value = running.animation.value(sceneTime - running.began);
        if (!value) continue;
        (running.animation.property == NodeProperty::Position ? pose.position : pose.scale) =
            *value;
    }
    return pose;
}

}  // namespace platform
