// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace brixtel {

// The faults of a landen.bin, in Dutch, one per string; empty for a sound file.
// Accepts any data without stopping the process.
[[nodiscard]] std::vector<std::string> keurLanden(std::span<const std::uint8_t> bestand);

}  // namespace brixtel
