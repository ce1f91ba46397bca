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

// In which country an internet address lies, and where that is on the globe.
//
// The table is read once, at the first question, and kept. A file that is
// missing or damaged leaves it empty without a word: no address then has a
// country, and home is the Netherlands. So does a file that is not what the
// checksum beside it says; without one nothing is checked. A file that claims to
// hold more than it does stops the process, after a line on standard error.
//
// Any thread may ask; the first to do so reads the file while others wait.
class LandenTabel {
  public:
    // Of the module's own resource "landen.bin".
    LandenTabel() = default;
    // Of another file; it is read at the first question.
    explicit LandenTabel(std::filesystem::path bestand) : bestand_(std::move(bestand)) {}
    LandenTabel(const LandenTabel&) = delete;
    LandenTabel& operator=(const LandenTabel&) = delete;

    // The program's one table, made at the first call.
    [[nodiscard]] static LandenTabel& gedeeld();

    // The countries, in the order of the file; empty before the first question.
    [[nodiscard]] const std::vector<Land>& landen() const;

    // The country of a bare IPv4 or IPv6 address: no brackets, port or zone.
    // Nothing when it is no such address or belongs to no country. Does not
    // allocate.
    [[nodiscard]] std::optional<Land> land(std::string_view adres);

    // The country of the user's locale, else the table's Netherlands, else the
    // Netherlands at 52.13 N, 5.29 E.
    [[nodiscard]] Land thuis();

  private:
    void laad();
    [[nodiscard]] LandenInhoud leesBestand() const;
    [[nodiscard]] const Land* vind(std::string_view adres) const;
    // By the bytes of an address, as the network has them.
    [[nodiscard]] const Land* zoek4(const std::uint8_t* bytes) const;
    [[nodiscard]] const Land* zoek6(const std::uint8_t* bytes) const;
    // The country in force at `sleutel`, by the last start that is not above it.
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
