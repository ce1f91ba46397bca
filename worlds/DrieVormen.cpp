// SPDX-License-Identifier: MIT
// The geometry and materials that the scenes share.
#include <algorithm>
#include <cmath>
#include <utility>

#include <glm/geometric.hpp>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::BlendMode;
using platform::GeometryPtr;
using platform::LightingModel;
using platform::Material;
using platform::MaterialPtr;

namespace {

std::vector<glm::vec3> enkel(const std::vector<glm::dvec3>& punten) {
    return {punten.begin(), punten.end()};
}

// The sine of an angle so near to half a turn that rounding dominates it.
constexpr double kTegenover = 1e-6;

// The unit vector square to a direction that points furthest north.
glm::dvec3 haaksOp(const glm::dvec3& richting) {
    constexpr double kBijnaPool = 0.999;  // the sine of the highest latitude with a north
    const glm::dvec3 noord =
        std::abs(richting.y) < kBijnaPool ? glm::dvec3(0.0, 1.0, 0.0) : glm::dvec3(0.0, 0.0, 1.0);
    return glm::normalize(noord - glm::dot(noord, richting) * richting);
}

}  // namespace

MaterialPtr DrieWereld::gloed(platform::Contents kleur, GloedOpties opties) {
    auto materiaal = std::make_shared<Material>(std::move(kleur));
    materiaal->setLightingModel(LightingModel::Constant);
    materiaal->setDoubleSided(true);
    if (opties.add) {
        materiaal->setBlendMode(BlendMode::Additive);
        materiaal->setWritesDepth(false);
    }
    return materiaal;
}

std::optional<QImage> DrieWereld::cijferBeeld(bool een, const QColor& kleur) {
    constexpr BlokMaat kMaat{.blok = 4.0, .spleet = 1.0};
    constexpr double kRand = 2.0;      // points around the digit
    constexpr double kScherpte = 2.0;  // pixels to the point
    const QSizeF glief = BlokCijfer::maat(kMaat);
    return Thema::beeld(glief + QSizeF(2.0 * kRand, 2.0 * kRand),
                        {.schaal = kScherpte, .teken = [&](Tekenvlak& vlak) {
                             BlokCijfer::teken(een,
                                               {.linksonder = {kRand, kRand},
                                                .blok = kMaat.blok,
                                                .spleet = kMaat.spleet,
                                                .kleur = kleur},
                                               vlak);
                         }});
}

GeometryPtr DrieWereld::cijferVlak(bool een, const CijferOpties& opties) {
    // The plane's shape, as width to height.
    constexpr double kBreed = 29.0;
    constexpr double kHoog = 39.0;
    return platform::makePlane(
        {.width = opties.hoogte * kBreed / kHoog, .height = opties.hoogte},
        gloed(cijferBeeld(een, opties.kleur).value_or(QImage()), {.add = true}));
}

glm::dvec3 DrieWereld::punt(double breedte, double lengte, PuntOpties opties) {
    const double b = breedte * platform::kPi / 180.0;
    const double l = lengte * platform::kPi / 180.0;
    return opties.r * glm::dvec3(std::cos(b) * std::sin(l), std::sin(b), std::cos(b) * std::cos(l));
}

std::vector<glm::dvec3> DrieWereld::boog(const BoogOpties& opties) {
    constexpr double kSamen = 0.001;   // radians between ends that coincide
    constexpr double kVoet = 1.005;    // the distance from the middle at both ends
    constexpr double kLaagste = 0.06;  // the lift of the shortest arc above its ends
    constexpr double kVerder = 0.22;   // and what half a turn adds to it
    const auto& [van, naar, stappen] = opties;
    const double hoek = std::acos(std::clamp(glm::dot(van, naar), -1.0, 1.0));
    if (hoek <= kSamen) return {van, naar};
    // Between opposite points every way is the shortest, and the formula has none: the way
    // by the north is taken.
    const bool tegenover = std::sin(hoek) < kTegenover;
    const glm::dvec3 zijde = tegenover ? haaksOp(van) : glm::dvec3(0.0);
    const double hoogte = kVerder * hoek / platform::kPi + kLaagste;
    std::vector<glm::dvec3> punten;
    punten.reserve(static_cast<std::size_t>(stappen) + 1);
    for (int i = 0; i <= stappen; ++i) {
        const double t = static_cast<double>(i) / stappen;
        const double a = std::sin((1.0 - t) * hoek) / std::sin(hoek);
        const double b = std::sin(t * hoek) / std::sin(hoek);
        const double straal = kVoet + hoogte * std::sin(t * platform::kPi);
        const glm::dvec3 punt =
            tegenover ? std::cos(t * hoek) * van + std::sin(t * hoek) * zijde : a * van + b * naar;
        punten.push_back(straal * punt);
    }
    return punten;
}

GeometryPtr DrieWereld::punten(const std::vector<glm::dvec3>& punten, const PuntenOpties& opties) {
    platform::MeshData wolk{.primitive = platform::Primitive::Points,
                            .positions = enkel(punten),
                            .pointSize = opties.grootte,
                            .pointHeightShare = opties.hoogsteDeel};
    for (std::size_t i = 0; i < punten.size(); ++i)
        wolk.indices.push_back(static_cast<std::uint32_t>(i));
    return platform::makeGeometry(std::move(wolk), gloed(opties.kleur));
}

GeometryPtr DrieWereld::lijnen(const std::vector<glm::dvec3>& einden, const QColor& kleur) {
    return platform::makeLines(enkel(einden), gloed(kleur, {.add = true}));
}

}  // namespace brixtel
