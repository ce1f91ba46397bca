// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The text as one line, with a space for each character that controls the display.
[[nodiscard]] QString eenRegel(QString tekst);

// Prints the text as one line on standard error, and returns `uitgang`, the exit status for
// the error.
int meld(const QString& tekst, int uitgang);

// The words for the user where Qt gives up with the message `bericht`.
[[nodiscard]] QString waaromQtOpgeeft(const QString& bericht);

// Holds up the calling thread for good unless it is the main thread, which finds the loss itself.
void laatHoofddraadEindigen();

// The words where the display breaks the connection while a program starts or ends.
[[nodiscard]] QString schermVerbroken();

}  // namespace brixtel
