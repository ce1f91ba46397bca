// SPDX-License-Identifier: MIT
// Reads the output of lsof -F: one field on each line, its first character the field's tag.
// Any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "connections/LandenTabel.h"
#include "connections/Lijn.h"

namespace brixtel {

// The bare remote address in the value of an "n" line; empty when the line names none.
[[nodiscard]] std::string_view verAdres(std::string_view naam);

// A program's name for people; see VerbindingWacht::netteNaam.
[[nodiscard]] std::string netteNaam(std::string_view naam);

// The connections in the text by country, most first, then by code.
[[nodiscard]] std::vector<Lijn> groepeer(std::string_view tekst, LandenTabel& tabel);

// The sum; a result beyond 64 bits stops the process.
[[nodiscard]] std::int64_t telOp(std::int64_t a, std::int64_t b);
[[nodiscard]] std::int64_t totaalVan(const std::vector<Lijn>& lijnen);

}  // namespace brixtel
