// SPDX-License-Identifier: MIT
#include "worlds/DrieWereld.h"

#include <QUuid>
#include <array>
#include <utility>

#include "worlds/Bol.h"
#include "worlds/DrieStart.h"

namespace brixtel {

using platform::Camera;
using platform::Node;
using platform::NodePtr;
using platform::SceneView;

namespace {

constexpr double kTussentijd = 3.0;
constexpr double kRustigeTussentijd = 30.0;
constexpr int kMonsters = 4;
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
    struct Regel {
        DrieStart start;
        void (DrieWereld::*bouwer)();
    };
    // By the number of the kind.
    static const std::array<Regel, alleSoorten.size()> regels{{
#define DRIE(ruw, naam, nl, en, uitleg, bouwer, ...) {{__VA_ARGS__}, &DrieWereld::bouwer},
#include "worlds/Scenes.def"
    }};
    const auto& [start, bouwer] = regels.at(static_cast<std::size_t>(soort_));
    oog_ = camera({.z = start.oog.z, .zicht = start.zicht, .bloom = start.bloom});
    oog_->setPosition(start.oog);
    if (start.naarMidden) oog_->lookAt({0.0, 0.0, 0.0});
    if (start.mist.einde > start.mist.begin) zetMist(start.mist);
    (this->*bouwer)();
}

NodePtr DrieWereld::camera(const CameraOpties& opties) {
    auto node = std::make_shared<Node>();
    node->setCamera(Camera{.fieldOfView = opties.zicht,
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

void DrieWereld::zetMist(const DrieMist& mist) {
    scene_->setFog({.start = mist.begin, .end = mist.einde, .colour = Qt::black});
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
