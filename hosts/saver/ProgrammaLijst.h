// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

// The text of xscreensaver's settings file, ~/.xscreensaver, and our place in its list of
// programs. The host lists the programs of the last value `programs:`, and adds the programs
// of its own defaults that the value lacks. The functions take and return text: the bytes of
// the file, in any encoding.
namespace brixtel::programmalijst {

enum class Staat {
    Afwezig,
    Uitgezet,  // listed, with the host's `-` before it: never chosen at random
    Aanwezig,
};

// The number of the first line, from 1, that is neither a comment nor a setting with its
// value, or whose list of programs the file's end cuts off behind a backslash; 0 when the
// whole text is the host's. The other functions need a text with result 0.
[[nodiscard]] int onleesbareRegel(const QByteArray& tekst);

// Our state in the list that counts.
[[nodiscard]] Staat staat(const QByteArray& tekst);

// The text with our program as the last one, running `opdracht` as the file spells it. Other
// settings name a program by its number, and the last place changes no number. The same text
// if it holds our program already. Every line of the text is kept.
[[nodiscard]] QByteArray metOns(const QByteArray& tekst, const QByteArray& opdracht);

// The text without our program, on or off, at every place. Undoes metOns() exactly.
[[nodiscard]] QByteArray zonderOns(const QByteArray& tekst);

// The text of a new file, and whether a text is the rest of one after zonderOns().
[[nodiscard]] QByteArray nieuw(const QByteArray& opdracht);
[[nodiscard]] bool isLeegNieuw(const QByteArray& tekst);

}  // namespace brixtel::programmalijst
