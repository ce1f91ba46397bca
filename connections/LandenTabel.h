// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

#include "connections/BereikZoeker.h"
#include "connections/Land.h"
#include "connections/LandenBestand.h"

namespace brixtel {

// Finds the country of an internet address, and the country's place on the globe.
//
// The table is read once, at the first question, and kept. A missing or damaged file, or
// one that fails the checksum in the file beside it, silently leaves the table empty: no
// address has a country, and home is the Netherlands. Without a checksum file nothing is
// checked. A file that claims to hold more than it does stops the process, after a line on
// standard error.
//
// Any thread may ask; the first thread reads the file while others wait.
class LandenTabel {
  public:
    // Uses the module's own resource "landen.bin".
    LandenTabel() = default;
    // Uses another file, read at the first question.
    explicit LandenTabel(std::filesystem::path bestand) : bestand_(std::move(bestand)) {}
    LandenTabel(const LandenTabel&) = delete;
    LandenTabel& operator=(const LandenTabel&) = delete;

    // The program's one table, made at the first call.
    [[nodiscard]] static LandenTabel& gedeeld();

    // The countries, in the order of the file; empty before the first question.
    [[nodiscard]] const std::vector<Land>& landen() const;

    // The country of a bare IPv4 or IPv6 address: no brackets, port or zone. Nothing for
    // other text or an address without a country. Does not allocate.
    [[nodiscard]] std::optional<Land> land(std::string_view adres);

    // The country of the user's locale, else the table's Netherlands, else the
    // Netherlands at 52.13 N, 5.29 E.
    [[nodiscard]] Land thuis();

  private:
    void laad();
    [[nodiscard]] LandenInhoud leesBestand() const;
    [[nodiscard]] const Land* vind(std::string_view adres) const;
    // Finds the country of an address in network byte order.
    [[nodiscard]] const Land* zoek4(const std::uint8_t* bytes) const;
    [[nodiscard]] const Land* zoek6(const std::uint8_t* bytes) const;
    // The country of the last start that is not above `sleutel`.
    template <typename Getal>
    [[nodiscard]] const Land* zoek(Getal sleutel, const std::vector<Getal>& starts,
                                   const std::vector<std::uint8_t>& indexen,
                                   const BereikZoeker<Getal>& zoeker) const;

    const std::optional<std::filesystem::path> bestand_;
    LandenInhoud inhoud_;
    BereikZoeker<std::uint32_t> zoeker4_;
    BereikZoeker<std::uint64_t> zoeker6_;
    std::once_flag eenmaal_;
    std::atomic<bool> geladen_{false};
};

}  // namespace brixtel
