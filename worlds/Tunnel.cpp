// SPDX-License-Identifier: MIT
#include "worlds/Tunnel.h"

#include <array>
#include <utility>

#include <glm/gtc/matrix_transform.hpp>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::Action;
using platform::Node;
using platform::ParticleSystem;
using platform::WrapMode;

namespace {

constexpr double kBeeldZijde = 512.0;
constexpr int kKolommen = 16;
constexpr int kRijen = 14;
constexpr double kKolomBreedte = 32.0;
constexpr double kRijHoogte = 36.57;
constexpr double kOnderrand = 4.0;
constexpr BlokMaat kBlok{.blok = 3.0, .spleet = 1.0};
constexpr double kFelKans = 0.06;
constexpr double kSnelheid = 0.55;
constexpr double kVervaagt = 2.5;           // units before the camera
constexpr double kEindeloos = 1'000'000.0;  // seconds

TunnelCijfer werp(QPointF linksonder, double kolomHelderheid, platform::RandomSource& toeval) {
    const double eigen = toeval.unit();
    QColor kleur = Thema::cijferFel();
    if (toeval.unit() >= kFelKans) {
        kleur = Thema::cijfer();
        kleur.setAlphaF(static_cast<float>(kolomHelderheid * (0.3 + 0.7 * eigen)));
    }
    return {.een = toeval.coin(), .linksonder = linksonder, .kleur = kleur};
}

// The wallpaper is upside down, so that scrolling to larger v moves it towards the camera
// and the digits are not mirrored.
platform::GeometryPtr maakBuis(platform::MaterialPtr behang) {
    platform::MeshData data =
        platform::makeTube(
            {.innerRadius = 1.6, .outerRadius = 1.65, .height = 80.0, .radialSegments = 64})
            ->mesh()
            ->data();
    for (glm::vec2& uv : data.texcoords)
        uv = 1.0F - uv;
    return platform::makeGeometry(std::move(data), std::move(behang));
}

}  // namespace

std::vector<TunnelCijfer> tunnelCijfers(platform::RandomSource& toeval) {
    const double inspringing = (kKolomBreedte - BlokCijfer::maat(kBlok).width()) / 2.0;
    std::vector<TunnelCijfer> cijfers;
    cijfers.reserve(kKolommen * kRijen);
    for (int kolom = 0; kolom < kKolommen; ++kolom) {
        const double helderheid = 0.25 + 0.75 * toeval.unit();
        for (int rij = 0; rij < kRijen; ++rij) {
            const QPointF linksonder(inspringing + kKolomBreedte * kolom,
                                     kRijHoogte * rij + kOnderrand);
            cijfers.push_back(werp(linksonder, helderheid, toeval));
        }
    }
    return cijfers;
}

std::optional<QImage> tunnelBeeld(const std::vector<TunnelCijfer>& cijfers) {
    const auto teken = [&](Tekenvlak& vlak) {
        vlak.zetVulkleur(Qt::black);
        vlak.vul(std::array{QRectF(0.0, 0.0, kBeeldZijde, kBeeldZijde)});
        for (const TunnelCijfer& cijfer : cijfers)
            BlokCijfer::teken(cijfer.een,
                              {.linksonder = cijfer.linksonder,
                               .blok = kBlok.blok,
                               .spleet = kBlok.spleet,
                               .kleur = cijfer.kleur},
                              vlak);
    };
    auto beeld = Thema::beeld({kBeeldZijde, kBeeldZijde}, {.schaal = 1.0, .teken = teken});
    // The opaque format tells a drawer that nothing shows through.
    if (beeld) beeld->convertTo(QImage::Format_RGB32);
    return beeld;
}

glm::dmat4 tunnelVerloop(double seconden) {
    return glm::translate(glm::dmat4(1.0), {0.0, -kSnelheid * seconden, 0.0}) *
           glm::scale(glm::dmat4(1.0), {6.0, 14.0, 1.0});
}

platform::ParticleSettings tunnelStroom(bool groot) {
    return {.image = DrieWereld::cijferBeeld(true, Thema::groen()).value_or(QImage()),
            .birthRate = groot ? 90.0 : 45.0,
            .lifeSpan = 4.0,
            .velocity = 9.0,
            .velocityVariation = 3.0,
            .emittingDirection = {0.0, 0.0, 1.0},
            .spreadingAngle = 0.0,
            .emitterSize = {2.6, 2.6},
            .size = 0.06,
            .sizeVariation = 0.03,
            .colour = Thema::groen(),
            .colourVariation = {0.0, 0.0, 0.3, 0.0},
            .blendMode = platform::BlendMode::Additive,
            .nearFade = kVervaagt};
}

void DrieWereld::bouwTunnel() {
    const auto behang = gloed(tunnelBeeld(tunnelCijfers(toeval_)).value_or(QImage()));
    behang->setWrapS(WrapMode::Repeat);
    behang->setWrapT(WrapMode::Repeat);
    behang->setContentsTransform(tunnelVerloop(0.0));

    auto buis = std::make_shared<Node>(maakBuis(behang));
    buis->setName("buis");
    buis->setEulerAngles({platform::kPi / 2.0, 0.0, 0.0});
    buis->setPosition({0.0, 0.0, -38.0});
    buis->runAction(Action::repeatForever(Action::rotateBy({0.0, 2.0 * platform::kPi, 0.0}, 40.0)));
    // The wallpaper has then moved by whole repeats, so that the restart is invisible.
    buis->runAction(
        Action::repeatForever(Action::custom(kEindeloos, [behang](Node&, double seconden) {
            behang->setContentsTransform(tunnelVerloop(seconden));
        })));
    scene_->root().addChild(buis);

    auto stroom = std::make_shared<Node>();
    stroom->setName("stroom");
    stroom->setPosition({0.0, 0.0, -30.0});
    stroom->setParticles(std::make_shared<ParticleSystem>(tunnelStroom(groot()), toeval_));
    scene_->root().addChild(stroom);
}

}  // namespace brixtel
