// SPDX-License-Identifier: MIT
#include "hosts/bureau/Toegang.h"

#include <algorithm>

namespace brixtel {

bool Toegang::mag(const QString& beller, double nu) {
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
    if (tegoed.rest < 1.0) return false;
    tegoed.rest -= 1.0;
    return true;
}

}  // namespace brixtel
