// SPDX-License-Identifier: MIT
// One measurement, for people and for programs to read. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

#include "connections/Lijn.h"

namespace brixtel {

// A table in Dutch: the country, its programs and the number of connections,
// and their total. Ends with a line feed; without lines only the heading and
// a total of 0.
[[nodiscard]] QString alsTabel(const std::vector<Lijn>& lijnen);

// {"lijnen": [{"aantal", "breedte", "code", "lengte", "naam", "programmas"}, ...],
// "totaal"}, indented, in UTF-8, ending with a line feed.
[[nodiscard]] QByteArray alsJson(const std::vector<Lijn>& lijnen);

// The lines in such a JSON text, in its order; "naam" and "totaal" are not
// looked at and may be absent. Nothing when anything else is missing or of
// another kind, when a place is not on the globe or a number is below 0.
[[nodiscard]] std::optional<std::vector<Lijn>> leesJson(const QByteArray& json);

}  // namespace brixtel
