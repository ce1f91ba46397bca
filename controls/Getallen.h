// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The number as it is written in the Netherlands, with exactly so many digits
// behind the comma (none below 0): bxGetal(1234.5, 1) is "1.234,5".
[[nodiscard]] QString bxGetal(double waarde, int decimalen);

// A fraction as a whole percentage, halves away from zero: bxProcent(0.256) is
// "26%". What is no number, or no 64-bit number of percents, stops the process.
[[nodiscard]] QString bxProcent(double fractie);

}  // namespace brixtel
