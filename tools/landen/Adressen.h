// SPDX-License-Identifier: MIT
// Address ranges by country, as the rows of Debian's tor-geoipdb give them.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <vector>

namespace brixtel {

__extension__ using Adres = unsigned __int128;

// From the first to the last address, both in it; an IPv4 address as its number.
struct AdresRij {
    Adres eerste = 0;
    Adres laatste = 0;
    std::string code;
};

// Rows of "first,last,code", in decimal for IPv4 and as addresses for IPv6;
// lines that begin with # are skipped. Throws std::runtime_error, with the
// line's number, on any other line, and when the rows do not ascend.
[[nodiscard]] std::vector<AdresRij> leesAdressen4(std::istream& in);
[[nodiscard]] std::vector<AdresRij> leesAdressen6(std::istream& in);

}  // namespace brixtel
