// SPDX-License-Identifier: MIT
#include "hosts/saver/WerkGrens.h"

#include "platform/time/ProcessUsage.h"

namespace brixtel {

namespace {
constexpr QSizeF kKlein(480.0, 360.0);
// The preview's share of one processor, and the most of the display's frames to one of its own.
constexpr double kDeelKlein = 0.08;
constexpr int kTempoKlein = 8;
}  // namespace

bool isVoorbeeld(QSizeF maat) {
    return maat.width() < kKlein.width() && maat.height() < kKlein.height();
}

std::optional<platform::WorkBudget::Options> werkGrens(const Opdracht& opdracht, QSizeF maat) {
    const bool kanKlein = opdracht.voorvertoning || opdracht.taak == Opdracht::Taak::Gastheer;
    if (kanKlein && isVoorbeeld(maat))
        return platform::WorkBudget::Options{.share = kDeelKlein, .mostPace = kTempoKlein};
    if (opdracht.volleSnelheid) return std::nullopt;
    return platform::WorkBudget::Options{
        .share = platform::WorkBudget::shareOf(platform::processorCount())};
}

}  // namespace brixtel
