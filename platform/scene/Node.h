// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "platform/scene/Action.h"
#include "platform/scene/Camera.h"
#include "platform/scene/Floor.h"
#include "platform/scene/Geometry.h"
#include "platform/scene/Light.h"
#include "platform/scene/NodeAnimation.h"
#include "platform/scene/ParticleSystem.h"
#include "platform/scene/Transform.h"

namespace platform {

class ActionRun;
class Node;
struct SceneState;
using NodePtr = std::shared_ptr<Node>;

// A place in the scene and what stands there. A parent shares ownership of its
// children, which lie in its space; another NodePtr keeps the node alive, not
// its place. Units are the scene's, angles radians. Main thread only.
//
// Actions, animations and particles begin when they and the node are in a
// scene, and run by that scene's time. A node taken out of the scene stands
// still; put back, the node jumps to the state for the scene's time.
class Node {
  public:
    explicit Node(GeometryPtr geometry = {});
    ~Node();
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    [[nodiscard]] const std::string& name() const { return name_; }
    void setName(std::string name) { name_ = std::move(name); }

    // --- the tree ---
    [[nodiscard]] Node* parent() const { return parent_; }
    [[nodiscard]] const std::vector<NodePtr>& children() const { return children_; }
    // Moves the child here from its former parent. The child must not be this node or an ancestor.
    void addChild(NodePtr child);
    void removeFromParent();
    void removeAllChildren();
    // Finds the first node of that name in this subtree, parents before children.
    [[nodiscard]] NodePtr find(std::string_view name) const;

    // --- the place, in the parent's space ---
    [[nodiscard]] const glm::dvec3& position() const { return pose_.position; }
    void setPosition(const glm::dvec3& position) { pose_.position = position; }
    [[nodiscard]] const glm::dvec3& scale() const { return pose_.scale; }
    void setScale(const glm::dvec3& scale) { pose_.scale = scale; }
    // Orientation and Euler angles are one state; the last written wins. Unit length.
    [[nodiscard]] const glm::dquat& orientation() const { return pose_.orientation; }
    void setOrientation(const glm::dquat& orientation);
    [[nodiscard]] glm::dvec3 eulerAngles() const;
    void setEulerAngles(const glm::dvec3& angles);
    // Turns further, about an axis of the node's own frame.
    void rotate(double angle, const glm::dvec3& axis);
    // Points the node's own −z at a point of the scene, keeping its current up.
    void lookAt(const glm::dvec3& worldTarget);

    [[nodiscard]] glm::dmat4 localTransform() const { return pose_.matrix(); }
    // Maps to the scene's space, without node animations and billboards.
    [[nodiscard]] glm::dmat4 worldTransform() const;
    [[nodiscard]] glm::dvec3 worldPosition() const { return positionOf(worldTransform()); }

    // --- what stands there ---
    [[nodiscard]] const GeometryPtr& geometry() const { return geometry_; }
    void setGeometry(GeometryPtr geometry) { geometry_ = std::move(geometry); }
    [[nodiscard]] const std::optional<Camera>& camera() const { return camera_; }
    void setCamera(std::optional<Camera> camera) { camera_ = camera; }
    [[nodiscard]] const std::optional<Light>& light() const { return light_; }
    void setLight(std::optional<Light> light) { light_ = light; }
    [[nodiscard]] const std::optional<Floor>& floor() const { return floor_; }
    void setFloor(std::optional<Floor> floor) { floor_ = std::move(floor); }
    [[nodiscard]] const std::shared_ptr<ParticleSystem>& particles() const { return particles_; }
    void setParticles(std::shared_ptr<ParticleSystem> particles);

    // --- how it is shown ---
    // Smaller values are drawn first; 0 by default.
    [[nodiscard]] int renderingOrder() const { return renderingOrder_; }
    void setRenderingOrder(int order) { renderingOrder_ = order; }
    // Multiplies the whole subtree's alpha.
    [[nodiscard]] double opacity() const { return opacity_; }
    void setOpacity(double opacity) { opacity_ = opacity; }
    // Draws the node parallel to the screen; its position and scale are kept.
    [[nodiscard]] bool isBillboard() const { return billboard_; }
    void setBillboard(bool billboard) { billboard_ = billboard; }
    // The billboard's drawing offset from its position: to the right and up on
    // the screen, in the scene's units.
    [[nodiscard]] const glm::dvec2& screenOffset() const { return screenOffset_; }
    void setScreenOffset(const glm::dvec2& offset) { screenOffset_ = offset; }

    // --- motion ---
    // An action run under a key replaces the action under that key.
    void runAction(const Action& action, std::string key = {});
    void removeAction(std::string_view key);
    // The number of actions that have not ended; with hasAction(), a test's view of them.
    [[nodiscard]] std::size_t actionCount() const { return actions_.size(); }
    [[nodiscard]] bool hasAction(std::string_view key) const;

    void addAnimation(NodeAnimation animation, std::string key);
    void removeAnimation(std::string_view key);
    // Null without an animation of that key.
    [[nodiscard]] const NodeAnimation* animation(std::string_view key) const;
    // The pose shown at a scene time, animations included.
    [[nodiscard]] Pose shownPose(double sceneTime) const;

    // Merges the whole subtree's geometry into one mesh in this node's own
    // space; the clone keeps this node's place. Further materials and kinds of
    // primitive become one child each. Nothing but geometry is cloned; the
    // original is not changed.
    [[nodiscard]] NodePtr flattenedClone() const;

  private:
    friend class Scene;
    struct RunningAnimation;

    void enter(SceneState* scene);
    void touchScene();
    // Removes the actions that have ended.
    void dropFinishedActions(double sceneTime);

    std::string name_;
    Node* parent_ = nullptr;
    SceneState* scene_ = nullptr;  // the containing scene's, if any
    std::vector<NodePtr> children_;
    Pose pose_;
    std::optional<glm::dvec3> euler_;  // as written, while Euler angles were written last
    GeometryPtr geometry_;
    std::optional<Camera> camera_;
    std::optional<Light> light_;
    std::optional<Floor> floor_;
    std::shared_ptr<ParticleSystem> particles_;
    std::vector<std::shared_ptr<ActionRun>> actions_;
    std::vector<RunningAnimation> animations_;
    double opacity_ = 1.0;
    int renderingOrder_ = 0;
    bool billboard_ = false;
    glm::dvec2 screenOffset_{0.0};
};

}  // namespace platform
