// SPDX-License-Identifier: MIT
// Windows that follow their displays; private to desktop/.
#pragma once

#include <algorithm>
#include <vector>

#include "platform/window/Screen.h"

namespace brixtel {

// Whether a display's window still fits it: same size, same scale.
template <typename Vermelding>
[[nodiscard]] bool blijft(const Vermelding& vermelding,
                          const std::vector<platform::Screen>& schermen) {
    return std::any_of(schermen.begin(), schermen.end(), [&](const platform::Screen& scherm) {
        return scherm.name == vermelding.scherm.name && scherm.scale == vermelding.scherm.scale &&
               scherm.frame.size() == vermelding.scherm.frame.size();
    });
}

// Moves the display's window to the display's place; false if it has none.
template <typename Vermelding>
[[nodiscard]] bool verplaats(std::vector<Vermelding>& vermeldingen,
                             const platform::Screen& scherm) {
    const auto gevonden =
        std::find_if(vermeldingen.begin(), vermeldingen.end(),
                     [&](const Vermelding& v) { return v.scherm.name == scherm.name; });
    if (gevonden == vermeldingen.end()) return false;
    // The window is placed even where the frame is equal. Frames are measured from the
    // main display, whose own frame stays the same when it moves.
    gevonden->venster->setFrame(scherm.frame);
    gevonden->scherm = scherm;
    return true;
}

}  // namespace brixtel
