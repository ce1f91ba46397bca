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

// A place in the scene and what stands there. Children are held by their parent
// and lie in its space; whoever else keeps a NodePtr keeps the node, not its
// place. Units are the scene's, angles radians. Main thread only.
//
// Actions, animations and particles begin when both they and the node are in a
// scene, and run by that scene's time. Those of a node that is taken out stand
// still; put back, they go on to where the scene's time has come meanwhile.
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
    // Takes the child from where it was. Must not be an ancestor or itself.
    void addChild(NodePtr child);
    void removeFromParent();
    void removeAllChildren();
    // The first of that name below this node, parents before children.
    [[nodiscard]] NodePtr find(std::string_view name) const;

    // --- the place, in the parent's space ---
    [[nodiscard]] const glm::dvec3& position() const { return pose_.position; }
    void setPosition(const glm::dvec3& position) { pose_.position = position; }
    [[nodiscard]] const glm::dvec3& scale() const { return pose_.scale; }
    void setScale(const glm::dvec3& scale) { pose_.scale = scale; }
    // One state, the last written wins; of unit length.
    [[nodiscard]] const glm::dquat& orientation() const { return pose_.orientation; }
    void setOrientation(const glm::dquat& orientation);
    [[nodiscard]] glm::dvec3 eulerAngles() const;
    void setEulerAngles(const glm::dvec3& angles);
    // A further turn about an axis of the node's own frame.
    void rotate(double angle, const glm::dvec3& axis);
    // Points the node's own −z at a point of the scene, keeping its current up.
    void lookAt(const glm::dvec3& worldTarget);

    [[nodiscard]] glm::dmat4 localTransform() const { return pose_.matrix(); }
    // To the scene's space. Neither sees node animations or billboards.
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
    // Smaller first; 0 by default.
    [[nodiscard]] int renderingOrder() const { return renderingOrder_; }
    void setRenderingOrder(int order) { renderingOrder_ = order; }
    // Multiplies the whole subtree's alpha.
    [[nodiscard]] double opacity() const { return opacity_; }
    void setOpacity(double opacity) { opacity_ = opacity; }
    // Hides the whole subtree; its actions go on.
    [[nodiscard]] bool isHidden() const { return hidden_; }
    void setHidden(bool hidden) { hidden_ = hidden; }
    // Drawn parallel to the screen; position and scale are kept.
    [[nodiscard]] bool isBillboard() const { return billboard_; }
    void setBillboard(bool billboard) { billboard_ = billboard; }
    // How far beside its position a billboard is drawn: to the right and up on the
    // screen, in the scene's units.
    [[nodiscard]] const glm::dvec2& screenOffset() const { return screenOffset_; }
    void setScreenOffset(const glm::dvec2& offset) { screenOffset_ = offset; }

    // --- motion ---
    // An action run under a key replaces the one under that key.
    void runAction(const Action& action, std::string key = {});
    void removeAction(std::string_view key);
    void removeAllActions();
    // Those that have not ended.
    [[nodiscard]] std::size_t actionCount() const { return actions_.size(); }
    [[nodiscard]] bool hasAction(std::string_view key) const;

    void addAnimation(NodeAnimation animation, std::string key);
    void removeAnimation(std::string_view key);
    // Absent without one of that key.
    [[nodiscard]] const NodeAnimation* animation(std::string_view key) const;
    // Where the node is shown at a scene time, animations included.
    [[nodiscard]] Pose shownPose(double sceneTime) const;

    // The whole subtree as one node, its geometry merged into one mesh in this
    // node's own space, this node's own place kept. Where it wears several
    // materials or mixes primitives, those after the first become children,
    // one each. Nothing but geometry comes along; the original stays as it is.
    [[nodiscard]] NodePtr flattenedClone() const;

  private:
    friend class Scene;
    struct RunningAnimation;

    void enter(SceneState* scene);
    void touchScene();
    // Takes out the actions that are over.
    void dropFinishedActions(double sceneTime);

    std::string name_;
    Node* parent_ = nullptr;
    SceneState* scene_ = nullptr;  // of the scene that it is in, if any
    std::vector<NodePtr> children_;
    Pose pose_;
    std::optional<glm::dvec3> euler_;  // as written, while they are the last written
    GeometryPtr geometry_;
    std::optional<Camera> camera_;
    std::optional<Light> light_;
    std::optional<Floor> floor_;
    std::shared_ptr<ParticleSystem> particles_;
    std::vector<std::shared_ptr<ActionRun>> actions_;
    std::vector<RunningAnimation> animations_;
    double opacity_ = 1.0;
    int renderingOrder_ = 0;
    bool hidden_ = false;
    bool billboard_ = false;
    glm::dvec2 screenOffset_{0.0};
};

}  // namespace platform
