// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
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
constexpr double kGrondBreder = 10.0;
constexpr double kGrondOmhoog = 2.0;  // points, since letters stand high in their picture
constexpr double kNacht = 0.93;       // part of the light behind a label that is removed
constexpr double kRandBreed = 0.06;   // one soft edge, as a part of the night's width
constexpr double kRandHoog = 0.3;     // and as a part of its height

// The radii of a country's dot and of a moving light, and a label's distance from the
// globe's middle.
constexpr double kGrootteStip = 0.016;
constexpr double kGrootteLicht = 0.011;
constexpr double kLabelStraal = 1.09;

// The strength of a line from a label to its country.
constexpr float kDraadAlfa = 0.7F;
// The strength that an arc keeps, however quiet its line is.
constexpr double kMinsteBoog = 0.45;

// A trip of a light in seconds: the shortest, the step to the next, and the number of
// different trips.
constexpr double kKortsteReis = 1.2;
constexpr double kReisStap = 0.25;
constexpr std::size_t kReizen = 5;
// The part of a trip between the lights of two lines to one country.
constexpr double kTussenruimte = 0.37;

// The radius of a globe at its nearest, as a part of the picture's height.
constexpr double kDeelVanStraal = 0.65;

GeometryPtr bolletje(double straal, const QColor& kleur) {
    return platform::makeSphere(
        {.radius = straal, .segments = rondeSegmenten(kDeelVanStraal * straal)},
        DrieWereld::gloed(kleur));
}

// The line from a label that was moved aside to its country.
GeometryPtr draad() {
    QColor kleur = Thema::groen();
    kleur.setAlphaF(kDraadAlfa);
    const auto materiaal = DrieWereld::gloed(kleur, {.add = true});
    materiaal->setReadsDepth(false);
    return platform::makeLines({{0.0F, 0.0F, 0.0F}, {0.0F, 1.0F, 0.0F}}, materiaal);
}

// A country's own number from 0 to 1, the same in every run: the FNV-1a hash of its code.
double lotVan(const std::string& code) {
    constexpr std::uint32_t kFnvBegin = 2166136261U;
    constexpr std::uint32_t kFnvPriem = 16777619U;
    constexpr double kGetallen = 4294967296.0;  // 2^32, the number of hashes
    std::uint32_t getal = kFnvBegin;
    for (const char teken : code)
        getal = (getal ^ static_cast<unsigned char>(teken)) * kFnvPriem;
    return getal / kGetallen;
}

NodePtr zet(GeometryPtr vorm, const glm::dvec3& plaats, Node& in) {
    auto node = std::make_shared<Node>(std::move(vorm));
    node->setPosition(plaats);
    in.addChild(node);
    return node;
}

// The night behind a label: black with soft edges.
QImage nacht() {
    constexpr QSize kBeeldMaat(256, 64);  // pixels
    const auto deel = [](int i, int aantal, double rand) {
        const double naarRand = (0.5 + std::min(i, aantal - 1 - i)) / aantal;
        return zacht(naarRand / rand);
    };
    QImage beeld(kBeeldMaat, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x) {
            const double dicht =
                kNacht * deel(x, beeld.width(), kRandBreed) * deel(y, beeld.height(), kRandHoog);
            beeld.setPixel(x, y, qRgba(0, 0, 0, static_cast<int>(std::lround(255.0 * dicht))));
        }
    return beeld;
}

// The background of a label. Letters would vanish against the brightest possible view
// behind a label. All labels share one unit square, so that one draw call draws them.
GeometryPtr grond() {
    const auto materiaal = DrieWereld::gloed(nacht());
    materiaal->setReadsDepth(false);
    materiaal->setWritesDepth(false);
    return platform::makePlane({.width = 1.0, .height = 1.0}, materiaal);
}

// The arc's points as pairs of end points.
std::vector<glm::dvec3> stukken(const std::vector<glm::dvec3>& baan) {
    std::vector<glm::dvec3> einden;
    for (std::size_t i = 1; i < baan.size(); ++i) {
        einden.push_back(baan[i - 1]);
        einden.push_back(baan[i]);
    }
    return einden;
}

// The colour of an arc; a line busier than the first is as bright as the first.
QColor boogKleur(std::int64_t aantal, std::int64_t eerste) {
    QColor kleur = Thema::groen();
    const double deel = static_cast<double>(aantal) / static_cast<double>(eerste);
    kleur.setAlphaF(
        static_cast<float>(std::clamp(kMinsteBoog + (1.0 - kMinsteBoog) * deel, 0.0, 1.0)));
    return kleur;
}

}  // namespace

BolLijnen::BolLijnen(const Opties& opties)
    : opties_(opties),
      stip_(bolletje(kGrootteStip, Thema::cijferFel())),
      licht_(bolletje(kGrootteLicht, Qt::white)),
      grond_(grond()),
      draad_(draad()),
      opschriften_(opties.thuis) {}

QString BolLijnen::opschrift(const Lijn& lijn) {
    return lijn.land.naam().toUpper() + QLatin1String("  ") + QString::number(lijn.aantal);
}

void BolLijnen::teken(const std::vector<Lijn>& lijnen, double tijd, Node& in) {
    in.removeAllChildren();
    const glm::dvec3 thuis =
        DrieWereld::punt(opties_.thuis.breedte, opties_.thuis.lengte, {.r = 1.0});
    const std::int64_t eerste = lijnen.empty() ? 1 : std::max<std::int64_t>(lijnen[0].aantal, 1);
    std::map<QString, GeometryPtr> labels;
    std::vector<BolLabels::Opschrift> opschriften;
    Reizen reizen;
    banen_.clear();
    for (std::size_t i = 0; i < std::min(lijnen.size(), opties_.meeste); ++i) {
        const Lijn& lijn = lijnen[i];
        const auto punt = [&](double r) {
            return DrieWereld::punt(lijn.land.breedte, lijn.land.lengte, {.r = r});
        };
        auto baan = DrieWereld::boog({.van = thuis, .naar = punt(1.0)});
        zet(DrieWereld::lijnen(stukken(baan), boogKleur(lijn.aantal, eerste)), {}, in)
            ->setRenderingOrder(kVolgLicht);
        zet(stip_, punt(kStipStraal), in);
        banen_.insert(banen_.end(), baan.begin(), baan.end());
        LijnSleutel sleutel(lijn.land.code, 0);
        while (reizen.contains(sleutel))
            ++sleutel.second;
        const Reis reis = reizen.emplace(sleutel, reisVan(sleutel, i, tijd)).first->second;
        in.addChild(lichtje(std::move(baan), reis));
        const QString tekst = opschrift(lijn);
        const NodePtr opschrift = label(tekst);
        opschrift->setPosition(punt(kLabelStraal));
        in.addChild(opschrift);
        labels.emplace(tekst, opschrift->geometry());
        opschriften.push_back({sleutel, opschrift, opschrift->children().back()});
    }
    labels_ = std::move(labels);
    reizen_ = std::move(reizen);
    opschriften_.zet(std::move(opschriften));
}

double BolLijnen::Reis::deelOp(double nu) const {
    const double gereisd = deel + (nu - tijd) / duur;
    return gereisd - std::floor(gereisd);
}

// A line that stays continues from its place, perhaps at another pace. A new line starts at
// a place that depends on its country and the time, so that no two go in step.
BolLijnen::Reis BolLijnen::reisVan(const LijnSleutel& sleutel, std::size_t i, double tijd) const {
    const double duur = kKortsteReis + kReisStap * static_cast<double>(i % kReizen);
    const auto vorige = reizen_.find(sleutel);
    if (vorige != reizen_.end())
        return {.deel = vorige->second.deelOp(tijd), .tijd = tijd, .duur = duur};
    const Reis vanaf0{.deel = lotVan(sleutel.first) + kTussenruimte * sleutel.second, .duur = duur};
    return {.deel = vanaf0.deelOp(tijd), .tijd = tijd, .duur = duur};
}

NodePtr BolLijnen::lichtje(std::vector<glm::dvec3> baan, const Reis& reis) const {
    auto node = std::make_shared<Node>(licht_);
    node->setRenderingOrder(kVolgLicht);
    node->setPosition(baan.front());
    node->addAnimation({.property = platform::NodeProperty::Position,
                        .values = std::move(baan),
                        .duration = reis.duur,
                        .repeatCount = platform::kForever,
                        .timeOffset = reis.deel * reis.duur},
                       "baan");
    return node;
}

// The label's letters, with the night behind them and the line to their country as parts.
NodePtr BolLijnen::label(const QString& tekst) {
    GeometryPtr& vlak = labels_[tekst];
    if (!vlak) vlak = letters(tekst);
    auto node = std::make_shared<Node>(vlak);
    node->setBillboard(true);
    node->setRenderingOrder(kVolgLetters);
    const glm::vec3 maat = node->geometry()->size();
    auto achter = std::make_shared<Node>(grond_);
    achter->setRenderingOrder(kVolgGrond);
    achter->setScale({(1.0 + kRandBreed) * maat.x + kGrondBreder / kPuntenPerEenheid,
                      maat.y + 2.0 * kGrondOmhoog / kPuntenPerEenheid, 1.0});
    // The night begins at the label's lower edge, above the dot.
    achter->setPosition({0.0, kGrondOmhoog / kPuntenPerEenheid, 0.0});
    node->addChild(achter);
    auto draad = std::make_shared<Node>(draad_);
    draad->setRenderingOrder(kVolgLicht);
    draad->setOpacity(0.0);
    node->addChild(std::move(draad));
    return node;
}

GeometryPtr BolLijnen::letters(const QString& tekst) {
    // Points.
    constexpr double kLetterGrootte = 26.0;
    constexpr double kRuimte = 16.0;          // beside the letters, both sides together
    constexpr QPointF kBasislijn(8.0, 10.0);  // the start of the baseline, from below
    constexpr double kScherpte = 2.0;         // pixels to the point
    ++getekend_;
    const QFont font = Thema::font(kLetterGrootte, {.vet = true});
    const QSizeF maat(Thema::breedte(tekst, {.font = font}) + kRuimte, kLabelHoogte);
    const auto teken = [&](Tekenvlak& vlak) {
        Thema::tekst(tekst, {.font = font, .kleur = Thema::groen(), .op = kBasislijn}, vlak);
    };
    const auto beeld = Thema::beeld(maat, {.schaal = kScherpte, .teken = teken});
    const auto materiaal = DrieWereld::gloed(beeld.value_or(QImage()), {.add = true});
    // A depth test would cut a label near the rim; a label behind the globe is left out
    // whole.
    materiaal->setReadsDepth(false);
    return platform::makePlane(
        {.width = maat.width() / kPuntenPerEenheid, .height = maat.height() / kPuntenPerEenheid},
        materiaal);
}

}  // namespace brixtel
