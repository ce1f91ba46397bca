// SPDX-License-Identifier: MIT
// The format of landen.bin: one raw DEFLATE stream of these fields, little-endian and
// unaligned.
//
//   offset 0   6 bytes   "BXGEO1"
//          6   u16       number of countries
//          8   u32       number of IPv4 ranges
//         12   u32       number of IPv6 ranges
//         16   10 each   countries: 2 bytes of code, latitude and longitude as 32-bit floats
//       then   u32 each  IPv4 starts, ascending
//       then   u8 each   the country of each IPv4 range
//       then   u64 each  IPv6 starts (the upper half of the address), ascending
//       then   u8 each   the country of each IPv6 range
//
// A range runs to the next start. An index beyond the countries marks a range without a
// country.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "connections/Land.h"

namespace brixtel {

inline constexpr std::string_view kLandenMerk = "BXGEO1";
// The ending of a checksum file's name, after the whole name of its file.
inline constexpr std::string_view kLandenSom = ".crc32";
inline constexpr std::size_t kLandenKopMaat = 16;
inline constexpr std::size_t kLandMaat = 10;
// The limit of an unpacked table, far above any real one; a longer stream is not a table.
inline constexpr std::size_t kLandenGrens = std::size_t{64} << 20;

struct LandenKop {
    std::uint16_t landenTal = 0;
    std::uint32_t v4Tal = 0;
    std::uint32_t v6Tal = 0;

    // The length of the unpacked file for these counts.
    [[nodiscard]] std::uint64_t maat() const;
};

struct LandenInhoud {
    std::vector<Land> landen;
    std::vector<std::uint32_t> v4;
    std::vector<std::uint8_t> v4Land;
    std::vector<std::uint64_t> v6;
    std::vector<std::uint8_t> v6Land;
};

// Unpacks the stream; nothing when it is damaged, cut off, or grows beyond kLandenGrens.
[[nodiscard]] std::optional<std::vector<std::uint8_t>> pakUit(std::span<const std::uint8_t> stroom);

// The checksum of the packed stream, as its checksum file holds it: the CRC-32 as eight
// hexadecimal digits and a line feed.
[[nodiscard]] std::string somVan(std::span<const std::uint8_t> stroom);

// Reads the counts; nothing when the data is too short (a head alone is no table) or does
// not begin with the mark.
[[nodiscard]] std::optional<LandenKop> leesKop(std::span<const std::uint8_t> data);

// Reads the whole table. Empty where leesKop() gives nothing. Data shorter than its counts
// claim stops the process, after a line on standard error.
[[nodiscard]] LandenInhoud leesLanden(std::span<const std::uint8_t> data);

}  // namespace brixtel
