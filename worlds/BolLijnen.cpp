// SPDX-License-Identifier: MIT
#include <algorithm>
#include <utility>

#include "drawing/Thema.h"
#include "worlds/Bol.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::GeometryPtr;
using platform::Node;
using platform::NodeAnimation;
using platform::NodePtr;

namespace {

constexpr double kPuntenPerEenheid = 900.0;  // of a label's picture
constexpr double kLabelHoogte = 36.0;

GeometryPtr bolletje(double straal, const QColor& kleur) {
    return platform::makeSphere({.radius = straal}, DrieWereld::gloed(kleur));
}

NodePtr zet(GeometryPtr vorm, const glm::dvec3& plaats, Node& in) {
    auto node = std::make_shared<Node>(std::move(vorm));
    node->setPosition(plaats);
    in.addChild(node);
    return node;
}

// The arc's points as pairs of ends.
std::vector<glm::dvec3> stukken(const std::vector<glm::dvec3>& baan) {
    std::vector<glm::dvec3> einden;
    for (std::size_t i = 1; i < baan.size(); ++i) {
        einden.push_back(baan[i - 1]);
        einden.push_back(baan[i]);
    }
    return einden;
}

// Busier than the first line is not brighter than it.
QColor boogKleur(std::int64_t aantal, std::int64_t eerste) {
    QColor kleur = Thema::groen();
    const double deel = static_cast<double>(aantal) / static_cast<double>(eerste);
    kleur.setAlphaF(static_cast<float>(std::clamp(0.45 + 0.55 * deel, 0.0, 1.0)));
    return kleur;
}

}  // namespace

BolLijnen::BolLijnen(const Opties& opties)
    : opties_(opties),
      stip_(bolletje(0.016, Thema::cijferFel())),
      licht_(bolletje(0.011, Qt::white)) {}

QString BolLijnen::opschrift(const Lijn& lijn) {
    return lijn.land.naam().toUpper() + QLatin1String("  ") + QString::number(lijn.aantal);
}

void BolLijnen::teken(const std::vector<Lijn>& lijnen, Node& in) {
    in.removeAllChildren();
    const glm::dvec3 thuis =
        DrieWereld::punt(opties_.thuis.breedte, opties_.thuis.lengte, {.r = 1.0});
    const std::int64_t eerste = lijnen.empty() ? 1 : std::max<std::int64_t>(lijnen[0].aantal, 1);
    std::map<QString, GeometryPtr> labels;
    std::vector<NodePtr> opschriften;
    for (std::size_t i = 0; i < std::min(lijnen.size(), opties_.meeste); ++i) {
        const Lijn& lijn = lijnen[i];
        const auto punt = [&](double r) {
            return DrieWereld::punt(lijn.land.breedte, lijn.land.lengte, {.r = r});
        };
        auto baan = DrieWereld::boog({.van = thuis, .naar = punt(1.0)});
        zet(DrieWereld::lijnen(stukken(baan), boogKleur(lijn.aantal, eerste)), {}, in);
        zet(stip_, punt(1.01), in);
        in.addChild(lichtje(std::move(baan), i));
        const QString tekst = opschrift(lijn);
        const auto oud = labels_.find(tekst);
        const auto vlak = oud != labels_.end() ? oud->second : label(tekst);
        opschriften.push_back(zet(vlak, punt(1.09), in));
        opschriften.back()->setBillboard(true);
        opschriften.back()->setRenderingOrder(1);
        labels.emplace(tekst, vlak);
    }
    labels_ = std::move(labels);
    opschriften_.zet(std::move(opschriften));
}

NodePtr BolLijnen::lichtje(std::vector<glm::dvec3> baan, std::size_t i) const {
    auto node = std::make_shared<Node>(licht_);
    node->setPosition(baan.front());
    node->addAnimation({.property = platform::NodeProperty::Position,
                        .values = std::move(baan),
                        .duration = 1.2 + 0.25 * static_cast<double>(i % 5),
                        .repeatCount = platform::kForever,
                        // Incommensurate with every trip, so that no two start together.
                        .timeOffset = 0.37 * static_cast<double>(i)},
                       "baan");
    return node;
}

GeometryPtr BolLijnen::label(const QString& tekst) {
    ++getekend_;
    const QFont font = Thema::font(26.0, {.vet = true});
    const QSizeF maat(Thema::breedte(tekst, {.font = font}) + 16.0, kLabelHoogte);
    const auto teken = [&](Tekenvlak& vlak) {
        Thema::tekst(tekst, {.font = font, .kleur = Thema::groen(), .op = {8.0, 10.0}}, vlak);
    };
    const auto beeld = Thema::beeld(maat, {.schaal = 2.0, .teken = teken});
    const auto materiaal = DrieWereld::gloed(beeld.value_or(QImage()), {.add = true});
    // Near the rim the globe would cut it; what is behind the globe is left out whole.
    materiaal->setReadsDepth(false);
    return platform::makePlane(
        {.width = maat.width() / kPuntenPerEenheid, .height = maat.height() / kPuntenPerEenheid},
        materiaal);
}

}  // namespace brixtel
