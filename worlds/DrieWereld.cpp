// SPDX-License-Identifier: MIT
#include "worlds/DrieWereld.h"

#include <QUuid>
#include <utility>

#include "worlds/Bol.h"

namespace brixtel {

using platform::Camera;
using platform::Node;
using platform::NodePtr;
using platform::SceneView;

namespace {

constexpr double kTussentijd = 3.0;
constexpr double kRustigeTussentijd = 30.0;
constexpr int kMonsters = 4;
// The ring of the logo, 7.2 units round its word, with its digits.
constexpr double kRingBreedte = 0.565;
constexpr QSizeF kOpwarmMaat(64.0, 40.0);

double verhouding(QSizeF maat) {
    return maat.width() / maat.height();
}

}  // namespace

DrieWereld::DrieWereld(DrieSoort soort, const DrieWereldOpties& opties,
                       const DrieWereldBronnen& bronnen)
    : soort_(soort),
      opties_(opties),
      klok_(bronnen.klok),
      wacht_(bronnen.wacht),
      landen_(bronnen.landen),
      kaart_(bronnen.kaart),
      toeval_(bronnen.toeval.bits()) {
    scene_->setBackground(Qt::black);
    bouw();
}

DrieWereld::~DrieWereld() {
    if (gebruiktWacht()) wacht().gebruik(wachtSleutel(), false);
}

void DrieWereld::bouw() {
    switch (soort_) {
        case DrieSoort::bol:
            bouwBol();
            break;
        case DrieSoort::kubus:
            camera({.z = 6.0, .zicht = 40.0, .bloom = 1.4});
            zetMist(4.6, 8.2);
            bouwKubus();
            break;
        case DrieSoort::tunnel:
            camera({.z = 0.0, .zicht = 70.0, .bloom = 1.2})->setPosition({0.0, 0.0, 0.0});
            zetMist(3.0, 34.0);
            bouwTunnel();
            break;
        case DrieSoort::logo: {
            const NodePtr oog =
                camera({.z = 15.0, .zicht = 42.0, .bloom = 0.9, .breedte = kRingBreedte});
            oog->setPosition({0.0, 2.2, 15.0});
            oog->lookAt({0.0, 0.0, 0.0});
            zetMist(12.0, 40.0);
            bouwLogo();
            break;
        }
    }
}

NodePtr DrieWereld::camera(const CameraOpties& opties) {
    auto node = std::make_shared<Node>();
    node->setCamera(Camera{.fieldOfView = opties.zicht,
                           .subjectWidth = opties.breedte,
                           .zNear = 0.05,
                           .zFar = 100.0,
                           .hdr = true,
                           .bloomIntensity = opties.bloom,
                           .bloomThreshold = 0.35,
                           .bloomBlurRadius = groot() ? 14.0 : 8.0,
                           .exposureAdaptation = false});
    node->setPosition({0.0, 0.0, opties.z});
    scene_->root().addChild(node);
    return node;
}

void DrieWereld::zetMist(double begin, double einde) {
    scene_->setFog({.start = begin, .end = einde, .colour = Qt::black});
}

std::shared_ptr<SceneView> DrieWereld::maakView(const QRectF& frame) {
    auto view = std::make_shared<SceneView>(frame, klok_);
    view->setScene(scene_);
    view->setBackgroundColor(Qt::black);
    view->setSampleCount(groot() ? 4 : 2);
    view->setPreferredFramesPerSecond(groot() ? 60 : 30);
    view->setPlaying(true);
    view->setLoops(true);
    return view;
}

// --- the connection watch ---

bool DrieWereld::gebruiktWacht() const {
    return soort_ == DrieSoort::bol && !opties_.eigenLijnen;
}

VerbindingWacht& DrieWereld::wacht() const {
    return wacht_ != nullptr ? *wacht_ : VerbindingWacht::gedeeld();
}

LandenTabel& DrieWereld::landen() const {
    return landen_ != nullptr ? *landen_ : LandenTabel::gedeeld();
}

const LandKaart& DrieWereld::kaart() const {
    return kaart_ != nullptr ? *kaart_ : LandKaart::gedeeld();
}

const std::string& DrieWereld::wachtSleutel() {
    // Not drawn from the world's own source: worlds of one seed are still two.
    if (wachtSleutel_.empty())
        wachtSleutel_ =
            "bol-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
    return wachtSleutel_;
}

void DrieWereld::actief(bool aan) {
    if (gebruiktWacht())
        wacht().gebruik(wachtSleutel(), aan, rustig() ? kRustigeTussentijd : kTussentijd);
}

// --- still pictures ---

QImage DrieWereld::plaatje(const PlaatjeOpties& opties, const Fotograaf& fotograaf) {
    platform::DrawList lijst;
    const auto neem = [&](double tijd, const Opname& opname) {
        scene_->advance(tijd);
        platform::extract(*scene_, verhouding(opname.maat), lijst);
        return fotograaf(lijst, opname);
    };
    for (const double tijd : {0.0, opties.na / 3.0, 2.0 * opties.na / 3.0})
        neem(tijd, {.maat = kOpwarmMaat, .schaal = 1.0, .monsters = kMonsters});
    return neem(opties.na, {.maat = opties.maat, .schaal = opties.schaal, .monsters = kMonsters});
}

}  // namespace brixtel
