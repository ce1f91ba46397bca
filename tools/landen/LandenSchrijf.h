// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "connections/LandenBestand.h"

namespace brixtel {

// The table in the file's form, before packing. Each code must be two bytes.
[[nodiscard]] std::vector<std::uint8_t> schrijfLanden(const LandenInhoud& inhoud);

// Any data as one raw DEFLATE stream.
[[nodiscard]] std::vector<std::uint8_t> pakIn(std::span<const std::uint8_t> data);

}  // namespace brixtel
