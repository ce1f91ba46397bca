// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>
#include <functional>
#include <string>

namespace brixtel {

// A country and its place: a plain value, equal by all three fields. The code is the
// region's, two letters in UTF-8 ("NL"); latitude and longitude are in degrees, north and
// east positive.
struct Land {
    std::string code = {};
    double breedte = 0.0;
    double lengte = 0.0;

    bool operator==(const Land&) const = default;

    // The country's name in Dutch; the code itself where the locale data has none.
    [[nodiscard]] QString naam() const;
};

}  // namespace brixtel

template <>
struct std::hash<brixtel::Land> {
    std::size_t operator()(const brixtel::Land& land) const noexcept;
};
