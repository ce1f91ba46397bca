// SPDX-License-Identifier: MIT
#include "controls/SchuifRekenen.h"

#include <algorithm>
#include <cmath>

namespace brixtel {

namespace {

// The greatest number of bars; no screen has room for more.
constexpr double kMeesteBalken = 10'000.0;

}  // namespace

SchuifRekenen::SchuifRekenen(const Opties& opties)
    : onder_(std::min(opties.onder, opties.boven)),
      boven_(std::max(opties.onder, opties.boven)),
      stap_(opties.stap) {
    if (!std::isfinite(opties.onder) || !std::isfinite(opties.boven)) onder_ = boven_ = 0.0;
    if (stap_ > 0.0 && std::isfinite(stap_)) return;
    // The widest range has an infinite width, which must be avoided.
    const double breed = boven_ - onder_;
    stap_ = std::isfinite(breed) ? breed / 100.0 : boven_ / 100.0 - onder_ / 100.0;
}

double SchuifRekenen::binnen(double waarde) const {
    return std::isnan(waarde) ? onder_ : std::clamp(waarde, onder_, boven_);
}

double SchuifRekenen::fractie(double waarde) const {
    const double breed = boven_ / 2.0 - onder_ / 2.0;
    if (breed <= 0.0) return 0.0;
    return std::clamp((binnen(waarde) / 2.0 - onder_ / 2.0) / breed, 0.0, 1.0);
}

double SchuifRekenen::opFractie(double fractie) const {
    if (!(fractie > 0.0)) return onder_;
    if (fractie >= 1.0) return boven_;
    return binnen(onder_ * (1.0 - fractie) + boven_ * fractie);
}

double SchuifRekenen::verzet(double waarde, int stappen) const {
    const double van = std::isnan(waarde) ? onder_ : waarde;
    if (stap_ <= 0.0) return binnen(van);
    const double naar = van + stappen * stap_;
    const double aantal = std::round(naar / stap_);
    // An infinite number of steps leaves nothing to snap to.
    return binnen(std::isfinite(aantal) ? stap_ * aantal : naar);
}

int SchuifRekenen::balken(double breedte) {
    if (!(breedte > 0.0)) return 0;
    return static_cast<int>(std::min((breedte + 1.0) / kBalkAfstand, kMeesteBalken));
}

int SchuifRekenen::gevuld(double waarde, int balken) const {
    return static_cast<int>(std::lround(fractie(waarde) * balken));
}

}  // namespace brixtel
