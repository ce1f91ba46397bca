// SPDX-License-Identifier: MIT
#include <algorithm>
#include <cmath>
#include <utility>

#include <glm/geometric.hpp>
#include <glm/gtc/quaternion.hpp>
#include <glm/matrix.hpp>

#include "worlds/Bol.h"
#include "worlds/BolLabels.h"
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
constexpr int kRonden = 32;
// The first rounds also push labels off other countries' dots. Later rounds leave a label over
// a dot where labels have no other room.
constexpr int kStipRonden = 28;
// The part of a push that the later of two labels takes.
constexpr double kLaterWijkt = 0.9;
// The pace at which a jump runs out, a second. The farthest jump, from one end of a label's
// range to the other, is over in four seconds, at no more than seven heights of a label a second.
constexpr double kBedaard = 1.5;

// The size of the home marker: its dot with the ring at its smallest. Home counts as this
// much further south than it lies, so that a country beside it or slightly further south
// keeps its label above the marker.
constexpr double kThuisBreedte = 0.06;
constexpr double kThuisHoogte = 0.055;
constexpr double kThuisZuidelijker = 0.015;

// The size of a country's dot with the room around it. A dot counts as this much further south
// than it lies, so that a label that stands above its own dot stands above a dot beside it too.
constexpr double kStipMaat = 0.04;
constexpr double kStipZuidelijker = 0.07;

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

// A critically damped spring: it never overshoots from rest, and a further jump keeps its pace.
void Uitloop::neem(double sprong, double tijd) {
    const double rest = op(tijd);
    vaart_ = vaartOp(tijd);
    rest_ = rest + sprong;
    begin_ = tijd;
}

double Uitloop::op(double tijd) const {
    const double weg = std::max(0.0, tijd - begin_);
    return (rest_ + (vaart_ + kBedaard * rest_) * weg) * std::exp(-kBedaard * weg);
}

double Uitloop::vaartOp(double tijd) const {
    const double weg = std::max(0.0, tijd - begin_);
    return (vaart_ - kBedaard * (vaart_ + kBedaard * rest_) * weg) * std::exp(-kBedaard * weg);
}

BolLabels::BolLabels(const BolPlaats& thuis)
    : thuis_(DrieWereld::punt(thuis.breedte, thuis.lengte, {.r = kStipStraal})) {}

void BolLabels::zet(std::vector<Opschrift> opschriften) {
    const std::vector<Label> vorige = std::exchange(labels_, {});
    stippen_.clear();
    ++lijsten_;
    const bool ongezien = std::exchange(nieuw_, true);
    ouder_ = opschriften.empty() ? nullptr : opschriften.front().label->parent();
    if (!ouder_) return;
    for (Opschrift& opschrift : opschriften) {
        const auto was = std::find_if(vorige.begin(), vorige.end(), [&](const Label& label) {
            return label.node && label.lijn == opschrift.lijn;
        });
        Label label = was == vorige.end() ? Label{.komst = lijsten_} : *was;
        label.gezien = was != vorige.end() && was->kracht > 0.0;
        label.komtErbij = was == vorige.end() ? !vorige.empty() : was->komtErbij && ongezien;
        label.node = std::move(opschrift.label);
        label.draad = std::move(opschrift.draad);
        label.lijn = std::move(opschrift.lijn);
        label.plaats = label.node->position();
        label.noorden = glm::normalize(label.plaats).y;
        label.maat = {label.node->geometry()->size().x, kAfstand};
        label.rang = labels_.size();
        stippen_.push_back(merk(kStipStraal * glm::normalize(label.plaats), {kStipMaat, kStipMaat},
                                kStipZuidelijker));
        stippen_.back().lijn = label.lijn;
        labels_.push_back(std::move(label));
    }
    labels_.push_back(merk(thuis_, {kThuisBreedte, kThuisHoogte}, kThuisZuidelijker));
    labels_.back().rang = labels_.size();
    for (std::vector<Label>* const alle : {&labels_, &stippen_})
        std::sort(alle->begin(), alle->end(), [](const Label& a, const Label& b) {
            return a.noorden > b.noorden || (a.noorden == b.noorden && a.lijn < b.lijn);
        });
}

BolLabels::Label BolLabels::merk(const glm::dvec3& plaats, const glm::dvec2& maat,
                                 double zuidelijker) {
    return {.plaats = plaats, .maat = maat, .noorden = glm::normalize(plaats).y - zuidelijker};
}

void BolLabels::schik(const platform::Node& camera, double tijd) {
    if (!ouder_) return;
    const glm::dmat4 oog = camera.worldTransform();
    const double zicht = camera.camera()->fieldOfView * platform::kPi / 180.0;
    const Blik nu{.camera = oog,
                  .rand = glm::length(glm::dvec3(oog[3])) * std::tan(0.5 * zicht),
                  .land = ouder_->worldTransform()};
    volg(nu, tijd);
    for (Label& label : labels_) {
        if (!label.node) continue;
        zie(label, nu);
        toon(label, nu, tijd);
    }
}

// Finds the wishes that are missing, and each label's point on the curve along its wishes: a
// cubic B-spline, which is smooth, and never leaves the span of the four.
void BolLabels::volg(const Blik& blik, double tijd) {
    const double seconde = std::floor(tijd);
    const bool verder = !nieuw_ && seconde == seconde_ + 1.0;
    if (verder)
        for (Label& label : labels_)
            std::rotate(label.wensen.begin(), label.wensen.begin() + 1, label.wensen.end());
    if (nieuw_ || seconde != seconde_)
        for (std::size_t i = verder ? 3 : 0; i < 4; ++i) {
            const double hoek = 2.0 * platform::kPi *
                                (seconde + static_cast<double>(i) - 1.0 - tijd) / kOmwenteling;
            Blik dan = blik;
            dan.land *= glm::mat4_cast(platform::turn(hoek, {0.0, 1.0, 0.0}));
            wens(dan, i);
        }
    seconde_ = seconde;
    const double u = tijd - seconde;
    const std::array delen{(1.0 - u) * (1.0 - u) * (1.0 - u) / 6.0,
                           (3.0 * u * u * u - 6.0 * u * u + 4.0) / 6.0,
                           (-3.0 * u * u * u + 3.0 * u * u + 3.0 * u + 1.0) / 6.0, u * u * u / 6.0};
    for (Label& label : labels_) {
        const Wens was = std::exchange(label.wens, {});
        for (std::size_t i = 0; i < 4; ++i) {
            label.wens.opzij += delen[i] * label.wensen[i].opzij;
            label.wens.omhoog += delen[i] * label.wensen[i].omhoog;
            label.wens.dekking -= delen[i] * (1.0 - label.wensen[i].dekking);
        }
        if (nieuw_ && label.komtErbij) label.verkleurt.neem(-label.wens.dekking, tijd);
        if (!nieuw_ || !label.gezien) continue;
        label.schuift.neem(was.opzij - label.wens.opzij, tijd);
        label.stijgt.neem(was.omhoog - label.wens.omhoog, tijd);
        label.verkleurt.neem(was.dekking - label.wens.dekking, tijd);
    }
    nieuw_ = false;
}

void BolLabels::wens(const Blik& blik, std::size_t knoop) {
    for (std::vector<Label>* const alle : {&labels_, &stippen_})
        for (Label& label : *alle)
            zie(label, blik);
    for (Label& label : labels_)
        label.opzij = label.node ? binnenBeeld(label, uitDeDrukte(label), blik.rand) : 0.0;
    maakRuimte(blik.rand);
    for (Label& label : labels_)
        label.wensen[knoop] = {
            .opzij = label.opzij, .omhoog = label.omhoog, .dekking = sterkte(label)};
}

void BolLabels::toon(Label& label, const Blik& blik, double tijd) {
    const double omhoog =
        std::min(label.wens.omhoog + label.stijgt.op(tijd), blik.rand - label.hoogte - label.y);
    const double opzij = binnenBeeld(label, label.wens.opzij + label.schuift.op(tijd), blik.rand);
    label.node->setScreenOffset(glm::dvec2(opzij, omhoog) / label.schaal);
    label.node->setOpacity(label.kracht *
                           std::clamp(label.wens.dekking + label.verkleurt.op(tijd), 0.0, 1.0));
    span(label, {opzij, omhoog}, blik.camera);
}

// The way aside that keeps the whole label in the picture, whose width is at least that of 4:3.
double BolLabels::binnenBeeld(const Label& label, double opzij, double rand) {
    constexpr double kSmalst = 4.0 / 3.0;
    constexpr double kVrij = 0.02;  // units between a label and the picture's edge
    const double verste = std::max(0.0, kSmalst * rand - kVrij - label.halveBreedte);
    return std::clamp(label.x + opzij, -verste, verste) - label.x;
}

void BolLabels::zie(Label& label, const Blik& blik) {
    const glm::dvec3 oog(blik.camera[3]);
    const glm::dvec3 plaats(blik.land * glm::dvec4(label.plaats, 1.0));
    label.kracht =
        zacht((glm::dot(glm::normalize(plaats), glm::normalize(oog)) - kOnder) / (kBoven - kOnder));
    const glm::dvec3 gezien = opScherm(plaats, blik.camera);
    label.x = gezien.x;
    label.y = gezien.y;
    label.schaal = gezien.z;
    label.halveBreedte = 0.5 * label.maat.x * label.schaal;
    label.hoogte = label.maat.y * label.schaal;
    label.vanzelf = label.omhoog = label.node ? naastStip(label, blik) : 0.0;
}

// The way up that a label moves to clear its own dot, which lies right behind the label except
// near the rim. A label that already hangs below its dot stays there.
double BolLabels::naastStip(const Label& label, const Blik& blik) {
    // Units: how far below its dot a label hangs freely, and the way from there over which
    // the label begins to clear the dot.
    constexpr double kHangt = 0.035;
    constexpr double kOvergang = 0.02;
    const glm::dvec3 stip(blik.land * glm::dvec4(kStipStraal * glm::normalize(label.plaats), 1.0));
    const double y = label.y - opScherm(stip, blik.camera).y;
    return std::max(0.0, label.hoogte - y) * zacht((y + kHangt) / kOvergang);
}

// The way aside from the side where most dots are: at most so far that the dot lies just beyond
// the label's end. A label without neighbours, or amid them, stays above its dot.
double BolLabels::uitDeDrukte(const Label& label) const {
    // Units: how near a neighbour counts, and how far aside it counts for one side whole.
    constexpr double kBuurtHoog = 0.14;
    constexpr double kBuurtBreed = 0.5;
    constexpr double kZij = 0.06;
    // The neighbours that weigh as much as the label's own wish to stand above its dot.
    constexpr double kEigen = 0.2;
    // The way between the label's end and its dot, beside a crowd.
    constexpr double kVoorbij = 0.05;
    double drukte = 0.0;
    double kant = 0.0;
    const auto telt = [&](const Label& ander) {
        const double naast = label.x - ander.x;
        const double telling = ander.kracht *
                               zacht(1.0 - std::abs(label.y - ander.y) / kBuurtHoog) *
                               zacht(1.0 - std::abs(naast) / kBuurtBreed);
        drukte += telling;
        kant += telling * (2.0 * zacht(0.5 + 0.5 * naast / kZij) - 1.0);
    };
    for (const Label& stip : stippen_)
        if (stip.lijn != label.lijn) telt(stip);
    for (const Label& ander : labels_)
        if (!ander.node) telt(ander);
    return (label.halveBreedte + kVoorbij) * kant / (kEigen + drukte);
}

// Makes a fixed number of rounds of small pushes, so that the result changes little where the
// labels move little.
void BolLabels::maakRuimte(double rand) {
    for (int ronde = 0; ronde < kRonden; ++ronde) {
        if (ronde < kStipRonden) mijdStippen();
        for (std::size_t i = 0; i < labels_.size(); ++i)
            for (std::size_t j = i + 1; j < labels_.size(); ++j)
                duw(labels_[i], labels_[j]);
        for (Label& label : labels_)
            label.omhoog = std::min(label.omhoog, rand - label.hoogte - label.y);
    }
    for (Label& label : labels_)
        label.omhoog = std::clamp(label.omhoog, -kVerste, kVerste);
}

// The part of a push that the first of two labels takes. A marker stays, and a label that came
// later makes way for one that was there.
double BolLabels::deelVan(const Label& een, const Label& ander) {
    if (!een.node || !ander.node) return een.node ? 1.0 : 0.0;
    if (een.komst == ander.komst) return 0.5;
    return een.komst > ander.komst ? kLaterWijkt : 1.0 - kLaterWijkt;
}

void BolLabels::mijdStippen() {
    for (Label& label : labels_) {
        if (!label.node) continue;
        for (Label& stip : stippen_) {
            if (stip.lijn == label.lijn) continue;
            const bool erboven = label.noorden > stip.noorden;
            duw(erboven ? label : stip, erboven ? stip : label);
        }
    }
}

// Pushes two labels apart, the northern one up. A northern label far below the other one,
// over the pole, passes it instead.
void BolLabels::duw(Label& noord, Label& zuid) {
    // In labels' heights: how far below the other label the passing begins, and what each
    // further height takes off the wanted distance. From four heights on nothing is pushed.
    constexpr double kPasseerVan = 2.0;
    constexpr double kPasseerMinder = 2.5;
    constexpr double kDuwPerKracht = 4.0;  // a push is whole from a quarter of the strength
    const double naast = noord.halveBreedte + zuid.halveBreedte + kAanloop -
                         std::abs(noord.x + noord.opzij - zuid.x - zuid.opzij);
    if (naast <= 0.0 || noord.kracht <= 0.0 || zuid.kracht <= 0.0) return;
    const double hoogte = 0.5 * (noord.hoogte + zuid.hoogte);
    const double omgekeerd = std::max(0.0, (zuid.y - noord.y) / hoogte - kPasseerVan);
    const double tekort = hoogte * (1.0 - kPasseerMinder * omgekeerd) - (noord.y + noord.omhoog) +
                          (zuid.y + zuid.omhoog);
    if (tekort <= 0.0) return;
    const double duwing =
        tekort * zacht(naast / kAanloop) *
        std::min({1.0, kDuwPerKracht * noord.kracht, kDuwPerKracht * zuid.kracht});
    const double noordDeel = deelVan(noord, zuid);
    noord.omhoog += noordDeel * duwing;
    zuid.omhoog -= (1.0 - noordDeel) * duwing;
}

// Places the line in the label's frame, which is the camera's, seen from the label. The
// line starts at the letters' edge that is nearest to the dot.
void BolLabels::span(const Label& label, const glm::dvec2& weg, const glm::dmat4& camera) {
    // Above its dot a label may stand aside by half its letters.
    const double naast = std::max(0.0, std::abs(weg.x) - kLetters * label.halveBreedte);
    const double gat = std::hypot(naast, weg.y - label.vanzelf) / label.hoogte;
    const double deel = zacht((gat - kDraadVan) / (kDraadTot - kDraadVan));
    label.draad->setOpacity(deel);
    if (deel <= 0.0) return;
    const glm::dvec3 plaats = label.node->worldPosition();
    const glm::dvec3 naar = kStipStraal * glm::normalize(plaats) - plaats;
    const glm::dvec3 stip(glm::dot(naar, glm::dvec3(camera[0])) - label.node->screenOffset().x,
                          glm::dot(naar, glm::dvec3(camera[1])) - label.node->screenOffset().y,
                          glm::dot(naar, glm::dvec3(camera[2])));
    const double rand = 0.5 * kLetters * label.node->geometry()->size().x;
    const glm::dvec3 begin(std::clamp(stip.x, -rand, rand),
                           std::clamp(stip.y, -0.5 * kAfstand, 0.5 * kAfstand), 0.0);
    const glm::dvec3 lijn = stip - begin;
    const double lengte = glm::length(lijn);
    if (lengte <= 0.0) return label.draad->setOpacity(0.0);
    const glm::dvec3 as = glm::cross({0.0, 1.0, 0.0}, lijn);
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
        const double naast = label.halveBreedte + ander.halveBreedte -
                             std::abs(label.x + label.opzij - ander.x - ander.opzij);
        const double boven = 0.5 * (label.hoogte + ander.hoogte) -
                             std::abs(label.y + label.omhoog - ander.y - ander.omhoog);
        if (naast <= 0.0 || boven <= 0.0) continue;
        bedekt = std::max(bedekt, ander.kracht * zacht(naast / kAanloop) *
                                      zacht(kBedektPerHoogte * boven / label.hoogte - kBedektVan));
    }
    return 1.0 + (kMinsteKracht - 1.0) * bedekt;
}

}  // namespace brixtel
