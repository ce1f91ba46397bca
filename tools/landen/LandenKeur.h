// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace brixtel {

// What is wrong with a landen.bin, in Dutch, one thing each; empty when it is
// sound. Reads anything at all without stopping the process.
[[nodiscard]] std::vector<std::string> keurLanden(std::span<const std::uint8_t> bestand);

}  // namespace brixtel
