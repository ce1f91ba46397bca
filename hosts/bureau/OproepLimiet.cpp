// SPDX-License-Identifier: MIT
#include "hosts/bureau/OproepLimiet.h"

#include <algorithm>

namespace brixtel {

bool OproepLimiet::mag(const QString& beller, double nu, double prijs) {
    const auto bekend = std::find_if(bellers_.begin(), bellers_.end(),
                                     [&](const Tegoed& t) { return t.beller == beller; });
    if (bekend == bellers_.end()) {
        if (bellers_.size() == kBellers) bellers_.erase(bellers_.begin());
        bellers_.push_back({.beller = beller, .rest = kInEens, .sinds = nu});
    } else {
        std::rotate(bekend, bekend + 1, bellers_.end());
    }
    Tegoed& tegoed = bellers_.back();
    tegoed.rest = std::min(kInEens, tegoed.rest + (nu - tegoed.sinds) * kPerSeconde);
    tegoed.sinds = nu;
    if (tegoed.rest < prijs) return false;
    tegoed.rest -= prijs;
    return true;
}

}  // namespace brixtel
