// SPDX-License-Identifier: MIT
#include "worlds/DrieWereld.h"

#include <QUuid>
#include <array>
#include <utility>

#include "worlds/Bol.h"
#include "worlds/DrieStart.h"

namespace brixtel {

namespace {

// Seconds between two measurements.
constexpr double kTussentijd = 3.0;
constexpr double kRustigeTussentijd = 30.0;

}  // namespace

DrieWereld::DrieWereld(DrieSoort soort, const DrieWereldOpties& opties,
                       const DrieWereldBronnen& bronnen)
    : soort_(soort),
      opties_(opties),
      klok_(bronnen.klok),
      wacht_(bronnen.wacht),
      landen_(bronnen.landen),
      kaart_(bronnen.kaart),
      toeval_(bronnen.toeval.bits()) {
    scene_->setBackground(Qt::black);
    bouw();
}

DrieWereld::~DrieWereld() {
    if (gebruiktWacht()) wacht().gebruik(wachtSleutel(), false);
}

void DrieWereld::bouw() {
    // The builders are indexed by the number of the kind.
    static constexpr std::array<void (DrieWereld::*)(), alleSoorten.size()> bouwers{
#define DRIE(ruw, naam, nl, en, uitleg, bouwer, ...) &DrieWereld::bouwer,
#include "worlds/Scenes.def"
    };
    const DrieStart& begin = start(soort_);
    oog_ = camera(
        {.z = begin.oog.z, .zicht = begin.zicht, .bloom = begin.bloom, .breedte = begin.breedte});
    oog_->setPosition(begin.oog);
    if (begin.naarMidden) oog_->lookAt({0.0, 0.0, 0.0});
    if (begin.mist.einde > begin.mist.begin) zetMist(begin.mist);
    (this->*bouwers.at(static_cast<std::size_t>(soort_)))();
}

bool DrieWereld::gebruiktWacht() const {
    return start(soort_).lijnen && !opties_.eigenLijnen;
}

VerbindingWacht& DrieWereld::wacht() const {
    return wacht_ != nullptr ? *wacht_ : VerbindingWacht::gedeeld();
}

LandenTabel& DrieWereld::landen() const {
    return landen_ != nullptr ? *landen_ : LandenTabel::gedeeld();
}

const LandKaart& DrieWereld::kaart() const {
    return kaart_ != nullptr ? *kaart_ : LandKaart::gedeeld();
}

const std::string& DrieWereld::wachtSleutel() {
    // The key does not come from the world's own source: two worlds of one seed need two
    // keys.
    if (wachtSleutel_.empty())
        wachtSleutel_ =
            "bol-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
    return wachtSleutel_;
}

void DrieWereld::actief(bool aan) {
    if (gebruiktWacht())
        wacht().gebruik(wachtSleutel(), aan, rustig() ? kRustigeTussentijd : kTussentijd);
}

}  // namespace brixtel
