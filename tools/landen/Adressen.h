// SPDX-License-Identifier: MIT
// Address ranges by country, from the rows of Debian's tor-geoipdb.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace brixtel {

__extension__ using Adres = unsigned __int128;

// A range, first and last address included; IPv4 addresses are their numbers.
struct AdresRij {
    Adres eerste = 0;
    Adres laatste = 0;
    std::string code;
};

// Reads rows of "first,last,code", in decimal for IPv4 and as addresses for
// IPv6; skips lines that begin with #. Throws std::runtime_error, with the
// line's number, on any other line, and when the rows do not ascend.
[[nodiscard]] std::vector<AdresRij> leesAdressen4(std::istream& in);
[[nodiscard]] std::vector<AdresRij> leesAdressen6(std::istream& in);

}  // namespace brixtel
