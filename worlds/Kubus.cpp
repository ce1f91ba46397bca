// SPDX-License-Identifier: MIT
#include "worlds/Kubus.h"

#include <cmath>
#include <utility>

#include "drawing/Thema.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::Action;
using platform::GeometryPtr;
using platform::Node;
using platform::NodePtr;

namespace {

constexpr double kRand = 1.47;       // the frame's distance from the middle
constexpr double kTik = 0.08;        // seconds
constexpr double kGolfKans = 0.025;  // of a new wave, in each tick
// In steps of the grid: a wave's way in a tick, and its reach to either side.
constexpr double kGolfStap = 0.35;
constexpr double kGolfBreedte = 0.8;

std::array<GeometryPtr, 4> maakVlakken() {
    constexpr float kGewoonAlfa = 0.55F;
    QColor gewoon = Thema::cijfer();
    gewoon.setAlphaF(kGewoonAlfa);
    const auto vlak = [](bool een, const QColor& kleur) {
        return DrieWereld::cijferVlak(een, {.kleur = kleur, .hoogte = KubusCijfers::kHoogte});
    };
    return {vlak(false, gewoon), vlak(true, gewoon), vlak(false, Thema::cijferFel()),
            vlak(true, Thema::cijferFel())};
}

// The twelve edges as pairs of end points.
std::vector<glm::dvec3> randen() {
    constexpr double c = kRand;
    constexpr std::array<std::pair<double, double>, 4> kRondom{
        {{-c, -c}, {c, -c}, {c, c}, {-c, c}}};
    std::vector<glm::dvec3> hoeken;
    for (const double z : {-c, c})
        for (const auto& [x, y] : kRondom)
            hoeken.emplace_back(x, y, z);
    constexpr std::array<std::pair<std::size_t, std::size_t>, 12> kRanden{{{0, 1},
                                                                           {1, 2},
                                                                           {2, 3},
                                                                           {3, 0},
                                                                           {4, 5},
                                                                           {5, 6},
                                                                           {6, 7},
                                                                           {7, 4},
                                                                           {0, 4},
                                                                           {1, 5},
                                                                           {2, 6},
                                                                           {3, 7}}};
    std::vector<glm::dvec3> einden;
    for (const auto& [van, naar] : kRanden) {
        einden.push_back(hoeken[van]);
        einden.push_back(hoeken[naar]);
    }
    return einden;
}

}  // namespace

KubusCijfers::KubusCijfers(Node& kubus, platform::RandomSource toeval)
    : toeval_(std::move(toeval)), vlakken_(maakVlakken()) {
    constexpr int kMidden = kZijde / 2;
    cellen_.reserve(kZijde * kZijde * kZijde);
    for (int x = 0; x < kZijde; ++x) {
        for (int y = 0; y < kZijde; ++y) {
            for (int z = 0; z < kZijde; ++z) {
                const bool een = toeval_.coin();
                auto node = std::make_shared<Node>(vlakken_[een ? 1 : 0]);
                node->setPosition(kStap * glm::dvec3(x - kMidden, y - kMidden, z - kMidden));
                node->setBillboard(true);
                kubus.addChild(node);
                cellen_.push_back({std::move(node), {x, y, z}, een});
            }
        }
    }
}

bool KubusCijfers::Golf::raakt(const Cel& cel) const {
    return loopt() && std::abs(cel.plek.at(as) - positie) < kGolfBreedte;
}

void KubusCijfers::Golf::verder() {
    if (!loopt()) return;
    positie += kGolfStap;
    if (positie > kZijde + 1) positie = -1.0;
}

void KubusCijfers::tik() {
    spring();
    if (!golf_.loopt() && toeval_.unit() < kGolfKans) golf_ = {0.0, toeval_.below(3)};
    kleur();
    golf_.verder();
}

void KubusCijfers::spring() {
    for (int i = 0; i < kSprongen; ++i) {
        Cel& cel = cellen_[toeval_.below(static_cast<std::uint32_t>(cellen_.size()))];
        cel.een = !cel.een;
    }
}

void KubusCijfers::kleur() {
    for (const Cel& cel : cellen_) {
        const GeometryPtr& vlak = vlakken_.at((golf_.raakt(cel) ? 2U : 0U) + (cel.een ? 1U : 0U));
        if (cel.node->geometry() != vlak) cel.node->setGeometry(vlak);
    }
}

void DrieWereld::bouwKubus() {
    constexpr glm::dvec3 kStand(0.45, 0.65, 0.1);  // radians, at the start
    constexpr glm::dvec3 kDraaiAs(0.4, 1.0, 0.2);
    constexpr double kOmwenteling = 24.0;  // seconds
    auto kubus = std::make_shared<Node>();
    kubus->setName("kubus");
    scene_->root().addChild(kubus);
    auto cijfers = std::make_shared<KubusCijfers>(*kubus, platform::RandomSource(toeval_.bits()));
    kubus->addChild(std::make_shared<Node>(lijnen(randen(), Thema::middel())));
    kubus->setEulerAngles(kStand);
    kubus->runAction(
        Action::repeatForever(Action::rotate(2.0 * platform::kPi, kDraaiAs, kOmwenteling)));
    // The action holds the digits, so that they live as long as the scene.
    kubus->runAction(Action::repeatForever(
        Action::sequence({Action::wait(kTik), Action::run([cijfers](Node&) { cijfers->tik(); })})));
}

}  // namespace brixtel
