// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include <QColor>

#include "platform/scene/Fog.h"
#include "platform/scene/Node.h"

namespace platform {

// The part of a scene's state that its nodes know.
struct SceneState {
    double time = 0.0;
    std::uint64_t revision = 0;  // rises when the tree, actions or particles change
};

// The retained 3D scene: a tree of nodes, a background, fog, and a scene time.
// Pure data on the main thread. Shares ownership of its nodes. A drawer sees
// only a DrawList (see DrawList.h).
//
// Every block of an action and every birth of a particle happens with
// the scene standing at exactly that event's time. The state at a time
// thus depends on the seed and the time alone, not on the frames in
// between.
class Scene {
  public:
    Scene();
    ~Scene();
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    [[nodiscard]] Node& root() { return *root_; }
    [[nodiscard]] const Node& root() const { return *root_; }

    // sRGB; transparent unless set.
    [[nodiscard]] const QColor& background() const { return background_; }
    void setBackground(const QColor& colour) { background_ = colour; }
    [[nodiscard]] const Fog& fog() const { return fog_; }
    void setFog(const Fog& fog) { fog_ = fog; }

    // The node seen from: the first with a camera, parents before children, in
    // child order. Null if none.
    [[nodiscard]] const Node* pointOfView() const;

    // Seconds, from 0; never decreases.
    [[nodiscard]] double time() const { return state_.time; }

    // Brings the scene to `sceneTime`, with all events up to then in order of
    // time. An earlier time changes nothing. Must not be called from an
    // action's block.
    void advance(double sceneTime);

  private:
    struct RunningAction {
        NodePtr node;
        std::shared_ptr<ActionRun> run;
    };
    struct RunningParticles {
        NodePtr node;
        std::shared_ptr<ParticleSystem> system;
    };

    void refresh();
    void collect(const NodePtr& node);
    void skipWhatIsTooLate(double time);
    // Does the earliest event due by `time`; false when there is none.
    bool happenNext(double time);
    void callBlock(const RunningAction& action, double time);
    void bringActionsTo(double time, const ActionRun* except);
    void dropFinished();

    SceneState state_;
    std::uint64_t collected_ = 0;  // the revision of the lists below
    NodePtr root_;
    QColor background_ = Qt::transparent;
    Fog fog_;
    std::vector<RunningAction> actions_;
    std::vector<RunningParticles> particles_;
};

}  // namespace platform
