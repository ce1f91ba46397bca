// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include <glm/geometric.hpp>
#include <glm/matrix.hpp>

#include "worlds/Bol.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

namespace {

// The strength of a label that shares its place with a busier country's label.
constexpr double kMinsteKracht = 0.37;
// The distance from one label to the next below it: a label's own height.
constexpr double kAfstand = 0.04;
// The largest distance between a label and its country; beyond it a reader would take the
// label for another country's.
constexpr double kVerste = 6.0 * kAfstand;
// The nearness, side by side, over which the pushing sets in softly.
constexpr double kAanloop = 0.06;
constexpr int kRonden = 24;

// The size of the home marker: its dot with the ring at its smallest. Home counts as this
// much further south than it lies, so that a country beside it or slightly further south
// keeps its label above the marker.
constexpr double kThuisBreedte = 0.06;
constexpr double kThuisHoogte = 0.055;
constexpr double kThuisZuidelijker = 0.015;

// The cosines of the angle between a country and the camera, seen from the globe's middle:
// where the country's dot sets, and some degrees on.
constexpr double kBoven = 0.165;
constexpr double kOnder = 0.05;

// The thin line begins to show when the label has been moved aside by half its height, and
// shows whole from one height.
constexpr double kDraadVan = 0.5;
constexpr double kDraadTot = 1.0;
// The part of a label's width that its letters take.
constexpr double kLetters = 0.8;

// The place on the screen, right and up, in units as large as those of the scene's middle,
// and the number of these units in one scene unit at that place.
glm::dvec3 opScherm(const glm::dvec3& plaats, const glm::dmat4& camera) {
    const glm::dvec3 oog(camera[3]);
    const glm::dvec3 naar = plaats - oog;
    const double schaal = glm::length(oog) / -glm::dot(naar, glm::dvec3(camera[2]));
    return {glm::dot(naar, glm::dvec3(camera[0])) * schaal,
            glm::dot(naar, glm::dvec3(camera[1])) * schaal, schaal};
}

}  // namespace

BolLabels::BolLabels(const BolPlaats& thuis)
    : thuis_(DrieWereld::punt(thuis.breedte, thuis.lengte, {.r = kStipStraal})) {}

void BolLabels::zet(std::vector<Opschrift> opschriften) {
    labels_.clear();
    ouder_ = opschriften.empty() ? nullptr : opschriften.front().label->parent();
    if (!ouder_) return;
    for (Opschrift& opschrift : opschriften) {
        const double noorden = glm::normalize(opschrift.label->position()).y;
        labels_.push_back({.node = std::move(opschrift.label),
                           .draad = std::move(opschrift.draad),
                           .noorden = noorden,
                           .rang = labels_.size()});
    }
    labels_.push_back(
        {.noorden = glm::normalize(thuis_).y - kThuisZuidelijker, .rang = labels_.size()});
    std::stable_sort(labels_.begin(), labels_.end(),
                     [](const Label& a, const Label& b) { return a.noorden > b.noorden; });
}

void BolLabels::schik(const platform::Node& camera) {
    const glm::dmat4 oog = camera.worldTransform();
    for (Label& label : labels_)
        zie(label, oog);
    const double zicht = camera.camera()->fieldOfView * platform::kPi / 180.0;
    maakRuimte(glm::length(glm::dvec3(oog[3])) * std::tan(0.5 * zicht));
    for (Label& label : labels_) {
        if (!label.node) continue;
        label.node->setScreenOffset({0.0, label.omhoog / label.schaal});
        label.node->setOpacity(label.kracht * sterkte(label));
        span(label, oog);
    }
}

glm::dvec3 BolLabels::plaatsVan(const Label& label) const {
    return label.node ? label.node->worldPosition()
                      : glm::dvec3(ouder_->worldTransform() * glm::dvec4(thuis_, 1.0));
}

void BolLabels::zie(Label& label, const glm::dmat4& camera) const {
    const glm::dvec3 oog(camera[3]);
    const glm::dvec3 plaats = plaatsVan(label);
    label.kracht =
        zacht((glm::dot(glm::normalize(plaats), glm::normalize(oog)) - kOnder) / (kBoven - kOnder));
    const glm::dvec3 gezien = opScherm(plaats, camera);
    label.x = gezien.x;
    label.y = gezien.y;
    label.schaal = gezien.z;
    const double breedte = label.node ? label.node->geometry()->size().x : kThuisBreedte;
    label.halveBreedte = 0.5 * breedte * label.schaal;
    label.hoogte = (label.node ? kAfstand : kThuisHoogte) * label.schaal;
    label.vanzelf = label.omhoog = label.node ? naastStip(label, camera) : 0.0;
}

// The way up that a label moves to clear its own dot, which lies right behind the label except
// near the rim. A label that already hangs below its dot stays there.
double BolLabels::naastStip(const Label& label, const glm::dmat4& camera) {
    // Units: how far below its dot a label hangs freely, and the way from there over which
    // the label begins to clear the dot.
    constexpr double kHangt = 0.035;
    constexpr double kOvergang = 0.02;
    const glm::dvec3 stip = kStipStraal * glm::normalize(label.node->worldPosition());
    const double y = label.y - opScherm(stip, camera).y;
    return std::max(0.0, label.hoogte - y) * zacht((y + kHangt) / kOvergang);
}

// Makes a fixed number of rounds of small pushes, so that the result moves as smoothly as
// the labels do.
void BolLabels::maakRuimte(double rand) {
    for (int ronde = 0; ronde < kRonden; ++ronde) {
        for (std::size_t i = 0; i < labels_.size(); ++i)
            for (std::size_t j = i + 1; j < labels_.size(); ++j)
                duw(labels_[i], labels_[j]);
        for (Label& label : labels_)
            label.omhoog = std::min(label.omhoog, rand - label.hoogte - label.y);
    }
    for (Label& label : labels_)
        label.omhoog = std::clamp(label.omhoog, -kVerste, kVerste);
}

// Pushes two labels apart, the northern one up. A northern label far below the other one,
// over the pole, passes it instead.
void BolLabels::duw(Label& noord, Label& zuid) {
    // In labels' heights: how far below the other label the passing begins, the way over
    // which it grows, and what each height of that way takes off the wanted distance.
    constexpr double kPasseerVan = 2.0;
    constexpr double kPasseerWeg = 2.0;
    constexpr double kPasseerMinder = 2.5;
    constexpr double kDuwPerKracht = 4.0;  // a push is whole from a quarter of the strength
    const double naast =
        noord.halveBreedte + zuid.halveBreedte + kAanloop - std::abs(noord.x - zuid.x);
    if (naast <= 0.0 || noord.kracht <= 0.0 || zuid.kracht <= 0.0) return;
    const double hoogte = 0.5 * (noord.hoogte + zuid.hoogte);
    const double omgekeerd =
        std::clamp((zuid.y - noord.y) / hoogte - kPasseerVan, 0.0, kPasseerWeg);
    const double tekort = hoogte * (1.0 - kPasseerMinder * omgekeerd) - (noord.y + noord.omhoog) +
                          (zuid.y + zuid.omhoog);
    if (tekort <= 0.0) return;
    const double stap = 0.5 * tekort * zacht(naast / kAanloop) *
                        std::min({1.0, kDuwPerKracht * noord.kracht, kDuwPerKracht * zuid.kracht});
    if (noord.node) noord.omhoog += zuid.node ? stap : 2.0 * stap;
    if (zuid.node) zuid.omhoog -= noord.node ? stap : 2.0 * stap;
}

// Places the line in the label's frame, which is the camera's, seen from the label. The
// line starts at the letters' edge that is nearest to the dot.
void BolLabels::span(const Label& label, const glm::dmat4& camera) {
    const double opzij = std::abs(label.omhoog - label.vanzelf) / label.hoogte;
    const double deel = zacht((opzij - kDraadVan) / (kDraadTot - kDraadVan));
    label.draad->setOpacity(deel);
    if (deel <= 0.0) return;
    const glm::dvec3 plaats = label.node->worldPosition();
    const glm::dvec3 naar = kStipStraal * glm::normalize(plaats) - plaats;
    const glm::dvec3 stip(glm::dot(naar, glm::dvec3(camera[0])),
                          glm::dot(naar, glm::dvec3(camera[1])) - label.node->screenOffset().y,
                          glm::dot(naar, glm::dvec3(camera[2])));
    const double rand = 0.5 * kLetters * label.node->geometry()->size().x;
    const glm::dvec3 begin(std::clamp(stip.x, -rand, rand), std::copysign(0.5 * kAfstand, stip.y),
                           0.0);
    const glm::dvec3 lijn = stip - begin;
    const double lengte = glm::length(lijn);
    if (lengte <= 0.0) return;
    const glm::dvec3 omhoog(0.0, 1.0, 0.0);
    const glm::dvec3 as = glm::cross(omhoog, lijn);
    label.draad->setPosition(begin);
    label.draad->setOrientation(platform::turn(std::acos(std::clamp(lijn.y / lengte, -1.0, 1.0)),
                                               glm::length(as) > 0.0 ? as : glm::dvec3(1, 0, 0)));
    label.draad->setScale({1.0, lengte, 1.0});
}

// The strength that remains when a busier label lies over this one.
double BolLabels::sterkte(const Label& label) const {
    // A label dims while the overlap grows from a sixth of its height to a half.
    constexpr double kBedektPerHoogte = 3.0;
    constexpr double kBedektVan = 0.5;
    double bedekt = 0.0;
    for (const Label& ander : labels_) {
        if (ander.rang >= label.rang) continue;
        const double naast = label.halveBreedte + ander.halveBreedte - std::abs(label.x - ander.x);
        const double boven = 0.5 * (label.hoogte + ander.hoogte) -
                             std::abs(label.y + label.omhoog - ander.y - ander.omhoog);
        if (naast <= 0.0 || boven <= 0.0) continue;
        bedekt = std::max(bedekt, ander.kracht * zacht(naast / kAanloop) *
                                      zacht(kBedektPerHoogte * boven / label.hoogte - kBedektVan));
    }
    return 1.0 + (kMinsteKracht - 1.0) * bedekt;
}

}  // namespace brixtel
