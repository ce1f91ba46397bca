// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

namespace brixtel {

// The widths that an option needs, in points: for its label on one line, and
// for its longest word.
struct KeuzeVraag {
    double gevraagd = 0.0;
    double minst = 0.0;
};

// The width of each option in the given room. Options share extra room equally.
// In too little room, the parts beyond the longest words shrink first, then
// everything. Edges lie on whole points, except the last.
[[nodiscard]] QList<double> keuzeVerdeling(const QList<KeuzeVraag>& vragen, double ruimte);

}  // namespace brixtel
