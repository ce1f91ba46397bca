// SPDX-License-Identifier: MIT
// The targets of the fuzzers and of the corpus test. Each takes any bytes, and
// stops the process when something is not as it should be.
#pragma once

#include <cstdint>
#include <span>

namespace fuzz {

using Bytes = std::span<const std::uint8_t>;

void regels(Bytes bytes);   // what lsof prints
void adres(Bytes bytes);    // an address to look up
void bestand(Bytes bytes);  // a landen.bin, before packing

}  // namespace fuzz
