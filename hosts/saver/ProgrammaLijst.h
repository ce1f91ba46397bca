// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// The text of xscreensaver's settings file, ~/.xscreensaver, and our place in
// its list of programs. The host lists what stands in the value `programs:`,
// and adds to it what its own defaults have and the value lacks; of several
// such values the last one counts. All of it is text in and text out: bytes,
// as the file has them, in whatever encoding.
namespace brixtel::programmalijst {

enum class Staat {
    Afwezig,
    Uitgezet,  // listed, with the host's `-` before it: not chosen at random
    Aanwezig,
};

// The number of the first line, from 1, that is neither a comment nor a setting
// with its value; 0 when the whole text is the host's. The other functions want
// a text for which it is 0.
[[nodiscard]] int onleesbareRegel(const QByteArray& tekst);

// Where we stand in the list that counts.
[[nodiscard]] Staat staat(const QByteArray& tekst);

// The text with us as the last program, running `opdracht` as the file spells
// it: so the numbers by which other settings mean a program stay right. The
// same text if we are in it already. Every line of the text is kept.
[[nodiscard]] QByteArray metOns(const QByteArray& tekst, const QByteArray& opdracht);

// The text without us, on or off, however often and wherever we stand in it.
// What metOns() made becomes what it was.
[[nodiscard]] QByteArray zonderOns(const QByteArray& tekst);

// A file for who has none, and whether a text is what zonderOns() leaves of it.
[[nodiscard]] QByteArray nieuw(const QByteArray& opdracht);
[[nodiscard]] bool isLeegNieuw(const QByteArray& tekst);

}  // namespace brixtel::programmalijst
