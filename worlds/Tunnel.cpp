// SPDX-License-Identifier: MIT
#include "worlds/Tunnel.h"

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

// The wallpaper, in points of its picture.
constexpr double kBeeldZijde = 512.0;
constexpr int kKolommen = 16;
constexpr int kRijen = 14;
constexpr double kKolomBreedte = 32.0;
constexpr double kRijHoogte = 36.57;
constexpr double kOnderrand = 4.0;
constexpr BlokMaat kBlok{.blok = 3.0, .spleet = 1.0};
constexpr double kFelKans = 0.06;
// The least brightness of a column, and the least of a digit as a part of its column's.
constexpr double kMinsteKolom = 0.25;
constexpr double kMinsteCijfer = 0.3;
// The wallpaper's repeats round and along the tube, and those it scrolls by in a second.
constexpr double kKeerRondom = 6.0;
constexpr double kKeerLangs = 14.0;
constexpr double kSnelheid = 0.55;

// The tube, in units of the scene.
constexpr double kBinnen = 1.6;
constexpr double kBuiten = 1.65;
constexpr double kLengte = 80.0;
constexpr int kSegmenten = 64;
constexpr double kMiddenZ = -38.0;
constexpr double kOmwenteling = 40.0;       // seconds
constexpr double kEindeloos = 1'000'000.0;  // seconds

// The digits that fly: their number in each second, their life in seconds, and lengths in
// units.
constexpr double kGeboorten = 90.0;
constexpr double kGeboortenKlein = 45.0;
constexpr double kLeven = 4.0;
constexpr double kVaart = 9.0;  // units in a second
constexpr double kVaartVerschil = 3.0;
constexpr double kBronZijde = 2.6;
constexpr double kBronZ = -30.0;
constexpr double kCijfer = 0.06;
constexpr double kCijferVerschil = 0.03;
constexpr double kKleurVerschil = 0.3;
constexpr double kVervaagt = 2.5;  // before the camera

TunnelCijfer werp(QPointF linksonder, double kolomHelderheid, platform::RandomSource& toeval) {
    const double eigen = toeval.unit();
    QColor kleur = Thema::cijferFel();
    if (toeval.unit() >= kFelKans) {
        kleur = Thema::cijfer();
        kleur.setAlphaF(
            static_cast<float>(kolomHelderheid * (kMinsteCijfer + (1.0 - kMinsteCijfer) * eigen)));
    }
    return {.een = toeval.coin(), .linksonder = linksonder, .kleur = kleur};
}

// The wallpaper is upside down, so that scrolling to larger v moves it towards the camera
// and the digits are not mirrored.
platform::GeometryPtr maakBuis(platform::MaterialPtr behang) {
    platform::MeshData data = platform::makeTube({.innerRadius = kBinnen,
                                                  .outerRadius = kBuiten,
                                                  .height = kLengte,
                                                  .radialSegments = kSegmenten})
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
        const double helderheid = kMinsteKolom + (1.0 - kMinsteKolom) * toeval.unit();
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
        vlak.painter().fillRect(QRectF(0.0, 0.0, kBeeldZijde, kBeeldZijde), Qt::black);
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
           glm::scale(glm::dmat4(1.0), {kKeerRondom, kKeerLangs, 1.0});
}

platform::ParticleSettings tunnelStroom(bool groot) {
    return {.image = DrieWereld::cijferBeeld(true, Thema::groen()).value_or(QImage()),
            .birthRate = groot ? kGeboorten : kGeboortenKlein,
            .lifeSpan = kLeven,
            .velocity = kVaart,
            .velocityVariation = kVaartVerschil,
            .emittingDirection = {0.0, 0.0, 1.0},
            .spreadingAngle = 0.0,
            .emitterSize = {kBronZijde, kBronZijde},
            .size = kCijfer,
            .sizeVariation = kCijferVerschil,
            .colour = Thema::groen(),
            .colourVariation = {0.0, 0.0, kKleurVerschil, 0.0},
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
    buis->setPosition({0.0, 0.0, kMiddenZ});
    buis->runAction(
        Action::repeatForever(Action::rotateBy({0.0, 2.0 * platform::kPi, 0.0}, kOmwenteling)));
    // The wallpaper has then moved by whole repeats, so that the restart is invisible.
    buis->runAction(
        Action::repeatForever(Action::custom(kEindeloos, [behang](Node&, double seconden) {
            behang->setContentsTransform(tunnelVerloop(seconden));
        })));
    scene_->root().addChild(buis);

    auto stroom = std::make_shared<Node>();
    stroom->setName("stroom");
    stroom->setPosition({0.0, 0.0, kBronZ});
    stroom->setParticles(std::make_shared<ParticleSystem>(tunnelStroom(groot()), toeval_));
    scene_->root().addChild(stroom);
}

}  // namespace brixtel
