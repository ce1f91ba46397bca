// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

namespace brixtel {

// What an option of a choice asks for, in points: enough for its label on one
// line, and enough for the longest word of it.
struct KeuzeVraag {
    double gevraagd = 0.0;
    double minst = 0.0;
};

// How wide each option is in so much room: they share what is left over alike;
// where there is too little, what is beyond their longest words shrinks first, and
// then everything. Edges lie on whole points, except the last.
[[nodiscard]] QList<double> keuzeVerdeling(const QList<KeuzeVraag>& vragen, double ruimte);

}  // namespace brixtel
