// SPDX-License-Identifier: MIT
// Country tables made for a test, in files that are only in memory.
#pragma once

#include <span>
#include <string>
#include <utility>
#include <vector>

#include "connections/LandenBestand.h"
#include "connections/LandenTabel.h"
#include "tests/support/GeheugenBestand.h"
#include "tools/landen/LandenSchrijf.h"

namespace steun {

// A table of just these bytes, unpacked and packed alike.
class Tabel {
  public:
    explicit Tabel(const brixtel::LandenInhoud& inhoud)
        : Tabel(brixtel::pakIn(brixtel::schrijfLanden(inhoud))) {}
    explicit Tabel(std::span<const std::uint8_t> bestand) : bestand_(bestand) {}

    brixtel::LandenTabel& operator*() { return tabel_; }
    brixtel::LandenTabel* operator->() { return &tabel_; }

  private:
    GeheugenBestand bestand_;
    brixtel::LandenTabel tabel_{bestand_.pad()};
};

inline constexpr std::uint8_t kGeen = 255;

// 1.0.0.0/8 and 2a00::/16 Dutch, 8.0.0.0/8 and 2600::/16 American, 9.0.0.0/8
// German; everything between belongs to nobody; nothing below 1.0.0.0 and 2001::.
inline brixtel::LandenInhoud kleineTabel() {
    return {.landen = {{"DE", 51.0, 10.5}, {"NL", 52.25, 5.5}, {"US", 39.75, -98.5}},
            .v4 = {0x01000000, 0x02000000, 0x08000000, 0x09000000, 0x0A000000},
            .v4Land = {1, kGeen, 2, 0, kGeen},
            .v6 = {0x2001000000000000, 0x2600000000000000, 0x2601000000000000, 0x2A00000000000000,
                   0x2A01000000000000},
            .v6Land = {kGeen, 2, kGeen, 1, 0}};
}

// The country's code, or "-".
inline std::string codeVan(brixtel::LandenTabel& tabel, std::string_view adres) {
    const auto land = tabel.land(adres);
    return land ? land->code : "-";
}

}  // namespace steun
