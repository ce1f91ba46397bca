// SPDX-License-Identifier: MIT
#include "worlds/Logo.h"

#include <array>
#include <cmath>

#include <glm/gtc/matrix_transform.hpp>

#include "drawing/BlokTekst.h"
#include "drawing/Thema.h"
#include "platform/animation/TimingFunction.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::Action;
using platform::kPi;
using platform::Light;
using platform::LightType;
using platform::Node;
using platform::NodePtr;
using platform::TimingFunction;
using platform::WrapMode;

namespace {

const QLatin1String kWoord("BRIXTEL");
constexpr BlokMaat kBlok{.blok = 1.0, .spleet = 0.15};
constexpr int kRingCijfers = 48;

// The light of the digits and of the blocks themselves.
QColor schijn() {
    QColor kleur = Thema::cijfer();
    kleur.setAlphaF(0.55F);
    return kleur;
}

platform::GeometryPtr maakBlok() {
    auto materiaal = std::make_shared<platform::Material>(Thema::groen());
    materiaal->setEmission(schijn());
    return platform::makeBox(
        {.width = 1.0, .height = 1.0, .length = 1.4, .chamferRadius = 0.06, .chamferSegments = 1},
        materiaal);
}

Action eindeloos(const Action& heen, const Action& terug) {
    return Action::repeatForever(
        Action::sequence({heen, terug}).timed(TimingFunction::easeInEaseOut()));
}

NodePtr maakVloer() {
    auto materiaal = std::make_shared<platform::Material>(logoTegel());
    materiaal->setLightingModel(platform::LightingModel::Constant);
    materiaal->setWrapS(WrapMode::Repeat);
    materiaal->setWrapT(WrapMode::Repeat);
    materiaal->setContentsTransform(glm::scale(glm::dmat4(1.0), {60.0, 60.0, 1.0}));
    auto vloer = std::make_shared<Node>();
    vloer->setName("vloer");
    vloer->setFloor(
        platform::Floor{.reflectivity = 0.22, .falloffEnd = 4.0, .material = materiaal});
    vloer->setPosition({0.0, -1.2, 0.0});
    return vloer;
}

NodePtr maakLamp(const Light& licht, const glm::dvec3& plaats) {
    auto lamp = std::make_shared<Node>();
    lamp->setLight(licht);
    lamp->setPosition(plaats);
    return lamp;
}

}  // namespace

NodePtr logoWoord() {
    const auto blok = maakBlok();
    const double breedte = BlokTekst::breedte(kWoord, kBlok);
    const double hoogte = BlokCijfer::maat(kBlok).height();
    auto woord = std::make_shared<Node>();
    for (const QRectF& vak : BlokTekst::vakken(
             kWoord,
             {.bij = {0.0, 0.0}, .blok = kBlok.blok, .spleet = kBlok.spleet, .omhoog = true})) {
        auto node = std::make_shared<Node>(blok);
        node->setPosition({vak.center().x() - breedte / 2.0, vak.center().y() - hoogte / 2.0, 0.0});
        woord->addChild(node);
    }
    return woord;
}

NodePtr logoRing(platform::RandomSource& toeval) {
    const std::array vlakken{DrieWereld::cijferVlak(false, {.kleur = schijn(), .hoogte = 0.42}),
                             DrieWereld::cijferVlak(true, {.kleur = schijn(), .hoogte = 0.42})};
    auto ring = std::make_shared<Node>();
    ring->setName("ring");
    ring->setPosition({0.0, 0.5, 0.0});
    for (int i = 0; i < kRingCijfers; ++i) {
        const double a = 2.0 * kPi * i / kRingCijfers;
        auto node = std::make_shared<Node>(vlakken[toeval.coin() ? 1 : 0]);
        node->setPosition({7.2 * std::cos(a), 0.3 * std::sin(3.0 * a), 7.2 * std::sin(a)});
        node->setBillboard(true);
        ring->addChild(node);
    }
    return ring;
}

QImage logoTegel() {
    constexpr double kZijde = 64.0;
    constexpr double kStreep = 1.5;
    const auto teken = [](Tekenvlak& vlak) {
        vlak.zetVulkleur(Qt::black);
        vlak.vul(std::array{QRectF(0.0, 0.0, kZijde, kZijde)});
        QColor streep = Thema::donker();
        streep.setAlphaF(0.7F);
        vlak.zetVulkleur(streep);
        vlak.vul(std::array{QRectF(0.0, 0.0, kZijde, kStreep)});
        vlak.vul(std::array{QRectF(0.0, 0.0, kStreep, kZijde)});
    };
    // The opaque format tells a drawer that nothing shows through.
    return Thema::beeld({kZijde, kZijde}, {.schaal = 1.0, .teken = teken})
        .value_or(QImage())
        .convertToFormat(QImage::Format_RGB32);
}

void DrieWereld::bouwLogo() {
    Node& wortel = scene_->root();
    const NodePtr woord = logoWoord()->flattenedClone();
    woord->setName("woord");
    woord->setScale({0.25, 0.25, 0.25});
    woord->setPosition({0.0, 0.5, 0.0});
    woord->runAction(eindeloos(Action::rotateTo({0.0, 0.55, 0.0}, 4.0),
                               Action::rotateTo({0.0, -0.55, 0.0}, 4.0)));
    woord->runAction(
        eindeloos(Action::moveBy({0.0, 0.25, 0.0}, 2.0), Action::moveBy({0.0, -0.25, 0.0}, 2.0)));
    wortel.addChild(woord);

    wortel.addChild(maakVloer());
    wortel.addChild(maakLamp({.type = LightType::Omni, .intensity = 900.0}, {2.0, 6.0, 10.0}));
    wortel.addChild(
        maakLamp({.type = LightType::Ambient, .colour = QColor::fromRgbF(0.0F, 0.25F, 0.08F)}, {}));

    const NodePtr ring = logoRing(toeval_);
    ring->runAction(Action::repeatForever(Action::rotateBy({0.0, 2.0 * kPi, 0.0}, 18.0)));
    wortel.addChild(ring);
}

}  // namespace brixtel
