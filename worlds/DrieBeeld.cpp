// SPDX-License-Identifier: MIT
// The view of a world: its camera, its fog, and the views that play it.
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::Camera;
using platform::Node;
using platform::NodePtr;
using platform::SceneView;

namespace {

// The near and far ends of the camera's sight, in units of the scene.
constexpr double kDichtbij = 0.05;
constexpr double kVeraf = 100.0;
constexpr double kBloomDrempel = 0.35;

// The bloom's radius in points, samples per pixel and frames per second, for a large view
// and for a small preview.
constexpr double kBloomStraal = 14.0;
constexpr double kBloomStraalKlein = 8.0;
constexpr int kMonsters = 4;
constexpr int kMonstersKlein = 2;
constexpr int kBeelden = 60;
constexpr int kBeeldenKlein = 30;

}  // namespace

NodePtr DrieWereld::camera(const CameraOpties& opties) {
    auto node = std::make_shared<Node>();
    node->setCamera(Camera{.fieldOfView = opties.zicht,
                           .subjectWidth = opties.breedte,
                           .zNear = kDichtbij,
                           .zFar = kVeraf,
                           .hdr = true,
                           .bloomIntensity = opties.bloom,
                           .bloomThreshold = kBloomDrempel,
                           .bloomBlurRadius = groot() ? kBloomStraal : kBloomStraalKlein,
                           .exposureAdaptation = false});
    node->setPosition({0.0, 0.0, opties.z});
    scene_->root().addChild(node);
    return node;
}

void DrieWereld::zetMist(const DrieMist& mist) {
    scene_->setFog({.start = mist.begin, .end = mist.einde, .colour = Qt::black});
}

std::shared_ptr<SceneView> DrieWereld::maakView(const QRectF& frame) {
    auto view = std::make_shared<SceneView>(frame, klok_);
    view->setScene(scene_);
    view->setBackgroundColor(Qt::black);
    view->setSampleCount(groot() ? kMonsters : kMonstersKlein);
    view->setPreferredFramesPerSecond(groot() ? kBeelden : kBeeldenKlein);
    view->setPlaying(true);
    view->setLoops(true);
    return view;
}

}  // namespace brixtel
