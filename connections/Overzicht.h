// SPDX-License-Identifier: MIT
// One measurement as text for people and for programs. Any thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <vector>

#include "connections/Lijn.h"

namespace brixtel {

// A table in Dutch: the country, its programs and the number of connections, and their
// total. Ends with a line feed; without lines it holds only the heading and a total of 0.
[[nodiscard]] QString alsTabel(const std::vector<Lijn>& lijnen);

// {"lijnen": [{"aantal", "breedte", "code", "lengte", "naam", "programmas"}, ...],
// "totaal"}, indented, in UTF-8, ending with a line feed.
[[nodiscard]] QByteArray alsJson(const std::vector<Lijn>& lijnen);

// The lines in a JSON text of alsJson(), in its order; "naam" and "totaal" are ignored and
// may be absent. Nothing when any other field is missing or of another type, a place is not
// on the globe, or a number is below 0.
[[nodiscard]] std::optional<std::vector<Lijn>> leesJson(const QByteArray& json);

}  // namespace brixtel
