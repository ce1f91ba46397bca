// SPDX-License-Identifier: MIT
#include "worlds/Bol.h"

#include <QRadialGradient>
#include <cmath>

#include "drawing/Thema.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

using platform::Action;
using platform::kPi;
using platform::Node;
using platform::NodePtr;

namespace {

constexpr double kGuldenHoek = 2.399963229728653;  // π (3 − √5)
constexpr double kRasterStraal = 1.001;

// The numbers of places over the whole globe, for full quality and for a small preview.
constexpr int kPunten = 26'000;
constexpr int kPuntenKlein = 12'000;
constexpr int kZeeDeel = 5;  // one in so many places at sea has a dot
// Sizes of dots in points, and the strength of sea and grid.
constexpr double kLandPunt = 3.0;
constexpr double kLandPuntKlein = 2.2;
constexpr double kZeePunt = 1.5;
constexpr double kZeeAlfa = 0.8;
constexpr double kRasterAlfa = 0.55;

// The most lines that are drawn.
constexpr std::size_t kMeeste = 24;
constexpr std::size_t kMeesteKlein = 14;

// The largest part of the picture's height for a dot, two fifths of the distance to the
// next dot. Larger dots would merge into patches in small pictures.
constexpr double kHoogsteDeel = 0.0038;
constexpr double kHoogsteDeelKlein = 0.0056;

constexpr double kKanteling = 0.55;  // of the home's latitude

constexpr double kBinnen = 0.985;
constexpr int kBinnenRijen = 24;
// Radii as parts of the picture's height, for parts of the globe at their nearest.
constexpr double kBinnenDeel = 0.46;
constexpr double kThuisDeel = 0.014;
constexpr double kRingDeel = 0.06;
constexpr double kPijpDeel = 0.005;

double radialen(double graden) {
    return graden * kPi / 180.0;
}

QColor dimmer(const QColor& kleur, double alfa) {
    QColor resultaat = kleur;
    resultaat.setAlphaF(static_cast<float>(alfa));
    return resultaat;
}

// Blends the picture onto black, as light alone. Linear light would dim an alpha of 7 % and
// still show a broad bright band; on black the ring is as faint as intended.
QImage opZwart(const QImage& beeld) {
    QImage zwart(beeld.size(), QImage::Format_RGB32);
    zwart.fill(Qt::black);
    QPainter(&zwart).drawImage(0, 0, beeld);
    return zwart;
}

NodePtr gloedNode() {
    constexpr double kZijde = 3.1;
    auto node = std::make_shared<Node>(
        platform::makePlane({.width = kZijde, .height = kZijde},
                            DrieWereld::gloed(opZwart(bolGloed()), {.add = true})));
    node->setName("gloed");
    node->setBillboard(true);
    node->setRenderingOrder(kVolgGloed);
    return node;
}

// The ball that hides the dots on the far side. Its poles lie on the line to the camera, so
// that its rim is one of its circles: round with many segments along that circle, and few
// across.
NodePtr donkereBol() {
    constexpr float kGroen = 0.03F;
    constexpr float kBlauw = 0.01F;
    auto materiaal = std::make_shared<platform::Material>(QColor::fromRgbF(0.0F, kGroen, kBlauw));
    materiaal->setLightingModel(platform::LightingModel::Constant);
    platform::MeshData vorm =
        platform::makeSphere(
            {.radius = kBinnen, .segments = rondeSegmenten(kBinnenDeel), .rows = kBinnenRijen})
            ->mesh()
            ->data();
    const auto kantel = [](std::vector<glm::vec3>& pijlen) {
        for (glm::vec3& p : pijlen)
            p = {p.x, -p.z, p.y};
    };
    kantel(vorm.positions);
    kantel(vorm.normals);
    auto node =
        std::make_shared<Node>(platform::makeGeometry(std::move(vorm), std::move(materiaal)));
    node->setName("binnen");
    node->setBillboard(true);
    return node;
}

// The dots, the grid and the dark ball that hides those on the far side.
void voegAarde(Node& bol, const BolPunten& wolken, bool groot) {
    const auto voeg = [&](platform::GeometryPtr vorm, int volgorde) {
        bol.addChild(std::make_shared<Node>(std::move(vorm)));
        bol.children().back()->setRenderingOrder(volgorde);
    };
    const double deel = groot ? kHoogsteDeel : kHoogsteDeelKlein;
    voeg(DrieWereld::punten(wolken.land, {.grootte = groot ? kLandPunt : kLandPuntKlein,
                                          .kleur = Thema::groen(),
                                          .hoogsteDeel = deel}),
         kVolgPunten);
    voeg(DrieWereld::punten(wolken.zee, {.grootte = kZeePunt,
                                         .kleur = dimmer(Thema::donker(), kZeeAlfa),
                                         .hoogsteDeel = deel}),
         kVolgPunten);
    voeg(DrieWereld::lijnen(bolRaster(), dimmer(Thema::donker(), kRasterAlfa)), kVolgRaster);
    bol.addChild(donkereBol());
}

void kijk(Node& oog, double graden) {
    platform::Camera camera = *oog.camera();
    camera.fieldOfView = graden;
    oog.setCamera(camera);
}

// The home marker: a dot, and a ring flat on the surface that pulses.
void voegThuis(Node& bol, const glm::dvec3& plaats) {
    constexpr double kStip = 0.022;
    constexpr double kRing = 0.05;
    constexpr double kPijp = 0.004;
    constexpr double kKlopVan = 0.6;  // of the ring's size
    constexpr double kKlopTot = 1.8;
    constexpr double kKlopDuur = 1.4;  // seconds
    auto stip = std::make_shared<Node>(
        platform::makeSphere({.radius = kStip, .segments = rondeSegmenten(kThuisDeel)},
                             DrieWereld::gloed(Thema::cijferFel())));
    stip->setName("thuis");
    stip->setPosition(plaats);
    bol.addChild(stip);

    auto ring = std::make_shared<Node>(
        platform::makeTorus({.ringRadius = kRing,
                             .pipeRadius = kPijp,
                             .ringSegments = rondeSegmenten(kRingDeel),
                             .pipeSegments = rondeSegmenten(kPijpDeel)},
                            DrieWereld::gloed(Thema::cijferFel(), {.add = true})));
    ring->setName("ring");
    ring->setRenderingOrder(kVolgRaster);
    bol.addChild(ring);
    ring->setPosition(plaats);
    ring->lookAt(2.0 * plaats);
    ring->rotate(kPi / 2.0, {1.0, 0.0, 0.0});
    ring->addAnimation({.property = platform::NodeProperty::Scale,
                        .values = {glm::dvec3(kKlopVan), glm::dvec3(kKlopTot)},
                        .duration = kKlopDuur,
                        .repeatCount = platform::kForever},
                       "klop");
}

}  // namespace

BolPlaats roosterPlaats(int k, int n) {
    const double breedte = std::asin(1.0 - 2.0 * (k + 0.5) / n) * 180.0 / kPi;
    const double lengte = std::fmod(k * kGuldenHoek, 2.0 * kPi) * 180.0 / kPi;
    return {breedte, lengte > 180.0 ? lengte - 360.0 : lengte};
}

BolPunten bolPunten(int n, const LandKaart& kaart) {
    BolPunten punten;
    for (int k = 0; k < n; ++k) {
        const BolPlaats plaats = roosterPlaats(k, n);
        const bool land = kaart.isLand(plaats.breedte, plaats.lengte);
        if (!land && k % kZeeDeel != 0) continue;
        (land ? punten.land : punten.zee)
            .push_back(DrieWereld::punt(plaats.breedte, plaats.lengte, {.r = 1.0}));
    }
    return punten;
}

std::vector<glm::dvec3> bolRaster() {
    // Degrees.
    constexpr double kRuit = 30.0;             // between two parallels or meridians
    constexpr double kHoogsteParallel = 60.0;  // north and south
    constexpr double kMeridiaanEinde = 84.0;   // north and south
    constexpr double kStap = 6.0;              // of a line's straight pieces
    std::vector<glm::dvec3> einden;
    const auto voeg = [&](double breedte, double lengte) {
        einden.push_back(DrieWereld::punt(breedte, lengte, {.r = kRasterStraal}));
    };
    for (double breedte = -kHoogsteParallel; breedte <= kHoogsteParallel; breedte += kRuit) {
        for (double lengte = -180.0; lengte < 180.0; lengte += kStap) {
            voeg(breedte, lengte);
            voeg(breedte, lengte + kStap);
        }
    }
    for (double lengte = -180.0; lengte < 180.0; lengte += kRuit) {
        for (double breedte = -kMeridiaanEinde; breedte < kMeridiaanEinde; breedte += kStap) {
            voeg(breedte, lengte);
            voeg(breedte + kStap, lengte);
        }
    }
    return einden;
}

QImage bolGloed() {
    constexpr double kZijde = 256.0;  // points
    // The ring's light over the radius: where it begins, is strongest, and ends.
    constexpr double kBegin = 0.6;
    constexpr double kTop = 0.655;
    constexpr double kEinde = 0.8;
    constexpr double kTopAlfa = 0.07;
    const auto teken = [](Tekenvlak& vlak) {
        QRadialGradient verloop(kZijde / 2.0, kZijde / 2.0, kZijde / 2.0);
        verloop.setColorAt(kBegin, dimmer(Thema::groen(), 0.0));
        verloop.setColorAt(kTop, dimmer(Thema::groen(), kTopAlfa));
        verloop.setColorAt(kEinde, dimmer(Thema::groen(), 0.0));
        vlak.painter().fillRect(QRectF(0.0, 0.0, kZijde, kZijde), verloop);
    };
    return Thema::beeld({kZijde, kZijde}, {.schaal = 1.0, .teken = teken}).value_or(QImage());
}

void DrieWereld::bouwBol() {
    zicht_ = std::make_shared<BolZicht>(oog_->camera()->fieldOfView);
    bol_ = std::make_shared<Node>();
    bol_->setName("bol");
    scene_->root().addChild(bol_);
    scene_->root().addChild(gloedNode());
    voegAarde(*bol_, bolPunten(groot() ? kPunten : kPuntenKlein, kaart()), groot());

    const Land thuis = landen().thuis();
    voegThuis(*bol_, punt(thuis.breedte, thuis.lengte, {.r = kStipStraal}));
    lijnenNode_ = std::make_shared<Node>();
    lijnenNode_->setName("lijnen");
    bol_->addChild(lijnenNode_);
    bolLijnen_ = std::make_shared<BolLijnen>(BolLijnen::Opties{
        .thuis = {thuis.breedte, thuis.lengte}, .meeste = groot() ? kMeeste : kMeesteKlein});

    // The globe turns round its own axis first and tilts second. Only this order makes
    // every home face the camera, with a tilt of half the home's latitude.
    bol_->setOrientation(platform::turn(kKanteling * radialen(thuis.breedte), {1.0, 0.0, 0.0}) *
                         platform::turn(-radialen(thuis.lengte), {0.0, 1.0, 0.0}));
    // The globe turns eastward, as the earth does.
    bol_->runAction(Action::repeatForever(Action::rotateBy({0.0, 2.0 * kPi, 0.0}, kOmwenteling)));

    // Runs in every frame after the globe has turned, since the globe comes before its
    // parts. The action does not use the world, which a view may outlive; the scene holds
    // the action.
    lijnenNode_->runAction(Action::repeatForever(Action::custom(
        kOmwenteling,
        [lijnen = bolLijnen_, oog = oog_, zicht = zicht_, &scene = *scene_](Node&, double) {
            kijk(*oog, zicht->graden(scene.time()));
            lijnen->schik(*oog, scene.time());
        })));

    if (eigenLijnen()) return;
    actief(true);
    // The world owns the subscription, which ends with it.
    abonnement_ =
        wacht().lijnen().volg([this](const std::vector<Lijn>& lijnen) { zetLijnen(lijnen); });
}

void DrieWereld::zetLijnen(const std::vector<Lijn>& lijnen) {
    if (!bolLijnen_) return;
    bolLijnen_->teken(lijnen, scene_->time(), *lijnenNode_);
    zicht_->vraag(bolZichtVoor(bolLijnen_->banen(), *bol_, *oog_), scene_->time());
    kijk(*oog_, zicht_->graden(scene_->time()));
    bolLijnen_->schik(*oog_, scene_->time());
}

}  // namespace brixtel
