// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "connections/Land.h"

namespace brixtel {

// The connections of the machine with one country: a plain value, equal by all fields.
struct Lijn {
    Land land = {};
    std::vector<std::string> programmas = {};  // distinct, ascending, UTF-8
    std::int64_t aantal = 0;                   // established connections

    bool operator==(const Lijn&) const = default;

    [[nodiscard]] const std::string& id() const { return land.code; }
};

}  // namespace brixtel
