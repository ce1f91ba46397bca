// SPDX-License-Identifier: MIT
// The choices' numbers as the user reads them in the panel, the menu and --stand. Any
// thread.
#pragma once

#include <QString>

namespace brixtel {

// A share 0...1 in whole percents: "70%".
[[nodiscard]] QString procentTekst(double fractie);

// A factor with one decimal, in Dutch: "1,5 ×".
[[nodiscard]] QString keerTekst(double factor);

}  // namespace brixtel
