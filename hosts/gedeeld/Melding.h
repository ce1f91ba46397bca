// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The text as one line, whatever it quotes: a space for each character that
// controls how it is shown.
[[nodiscard]] QString eenRegel(QString tekst);

// Says it to the user, as one line on standard error, and returns `uitgang`: the
// exit status that goes with it.
int meld(const QString& tekst, int uitgang);

}  // namespace brixtel
