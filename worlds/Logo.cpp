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
constexpr double kMiddenHoogte = 0.5;  // of the word and the ring

// The light of the digits and of the blocks themselves.
QColor schijn() {
    constexpr float kAlfa = 0.55F;
    QColor kleur = Thema::cijfer();
    kleur.setAlphaF(kAlfa);
    return kleur;
}

// The light that comes from everywhere.
QColor schemer() {
    constexpr float kGroen = 0.25F;
    constexpr float kBlauw = 0.08F;
    return QColor::fromRgbF(0.0F, kGroen, kBlauw);
}

// A block as wide and high as the word's grid; units of the word before it is scaled.
platform::GeometryPtr maakBlok() {
    constexpr double kDiepte = 1.4;
    constexpr double kSchuin = 0.06;
    auto materiaal = std::make_shared<platform::Material>(Thema::groen());
    materiaal->setEmission(schijn());
    return platform::makeBox({.width = kBlok.blok,
                              .height = kBlok.blok,
                              .length = kDiepte,
                              .chamferRadius = kSchuin,
                              .chamferSegments = 1},
                             materiaal);
}

Action eindeloos(const Action& heen, const Action& terug) {
    return Action::repeatForever(
        Action::sequence({heen, terug}).timed(TimingFunction::easeInEaseOut()));
}

NodePtr maakVloer() {
    constexpr double kTegels = 60.0;      // the tile's repeats over the texture's span
    constexpr double kSpiegeling = 0.22;  // part of the light
    constexpr double kSpiegelWeg = 4.0;   // units above the floor
    constexpr double kVloerHoogte = -1.2;
    auto materiaal = std::make_shared<platform::Material>(logoTegel());
    materiaal->setLightingModel(platform::LightingModel::Constant);
    materiaal->setWrapS(WrapMode::Repeat);
    materiaal->setWrapT(WrapMode::Repeat);
    materiaal->setContentsTransform(glm::scale(glm::dmat4(1.0), {kTegels, kTegels, 1.0}));
    auto vloer = std::make_shared<Node>();
    vloer->setName("vloer");
    vloer->setFloor(platform::Floor{
        .reflectivity = kSpiegeling, .falloffEnd = kSpiegelWeg, .material = materiaal});
    vloer->setPosition({0.0, kVloerHoogte, 0.0});
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
    constexpr double kCijferHoogte = 0.42;
    constexpr double kStraal = 7.2;
    constexpr double kDeining = 0.3;  // up and down
    constexpr double kGolven = 3.0;   // round the ring
    const DrieWereld::CijferOpties opties{.kleur = schijn(), .hoogte = kCijferHoogte};
    const std::array vlakken{DrieWereld::cijferVlak(false, opties),
                             DrieWereld::cijferVlak(true, opties)};
    auto ring = std::make_shared<Node>();
    ring->setName("ring");
    ring->setPosition({0.0, kMiddenHoogte, 0.0});
    for (int i = 0; i < kRingCijfers; ++i) {
        const double a = 2.0 * kPi * i / kRingCijfers;
        auto node = std::make_shared<Node>(vlakken[toeval.coin() ? 1 : 0]);
        node->setPosition(
            {kStraal * std::cos(a), kDeining * std::sin(kGolven * a), kStraal * std::sin(a)});
        node->setBillboard(true);
        ring->addChild(node);
    }
    return ring;
}

QImage logoTegel() {
    constexpr double kZijde = 64.0;  // points
    constexpr double kStreep = 1.5;
    constexpr float kStreepAlfa = 0.7F;
    const auto teken = [](Tekenvlak& vlak) {
        vlak.zetVulkleur(Qt::black);
        vlak.vul(std::array{QRectF(0.0, 0.0, kZijde, kZijde)});
        QColor streep = Thema::donker();
        streep.setAlphaF(kStreepAlfa);
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
    constexpr double kVerkleining = 0.25;
    constexpr double kZwaai = 0.55;     // radians to either side
    constexpr double kZwaaiDuur = 4.0;  // seconds for one way
    constexpr double kDeining = 0.25;   // units up and down
    constexpr double kDeinDuur = 2.0;   // seconds for one way
    constexpr double kLampSterkte = 900.0;
    constexpr glm::dvec3 kLampPlaats(2.0, 6.0, 10.0);
    constexpr double kRingDuur = 18.0;  // seconds for one turn
    Node& wortel = scene_->root();
    const NodePtr woord = logoWoord()->flattenedClone();
    woord->setName("woord");
    woord->setScale(glm::dvec3(kVerkleining));
    woord->setPosition({0.0, kMiddenHoogte, 0.0});
    woord->runAction(eindeloos(Action::rotateTo({0.0, kZwaai, 0.0}, kZwaaiDuur),
                               Action::rotateTo({0.0, -kZwaai, 0.0}, kZwaaiDuur)));
    woord->runAction(eindeloos(Action::moveBy({0.0, kDeining, 0.0}, kDeinDuur),
                               Action::moveBy({0.0, -kDeining, 0.0}, kDeinDuur)));
    wortel.addChild(woord);

    wortel.addChild(maakVloer());
    wortel.addChild(maakLamp({.type = LightType::Omni, .intensity = kLampSterkte}, kLampPlaats));
    wortel.addChild(maakLamp({.type = LightType::Ambient, .colour = schemer()}, {}));

    const NodePtr ring = logoRing(toeval_);
    ring->runAction(Action::repeatForever(Action::rotateBy({0.0, 2.0 * kPi, 0.0}, kRingDuur)));
    wortel.addChild(ring);
}

}  // namespace brixtel
