// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The number in Dutch notation, with exactly `decimalen` digits after the comma
// (none below 0): bxGetal(1234.5, 1) is "1.234,5".
[[nodiscard]] QString bxGetal(double waarde, int decimalen);

// A fraction as a whole percentage, halves away from zero: bxProcent(0.256) is
// "26%". NaN, and a percentage outside 64 bits, stop the process.
[[nodiscard]] QString bxProcent(double fractie);

}  // namespace brixtel
