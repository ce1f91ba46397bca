// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <cstdint>
#include <string>
#include <vector>

namespace brixtel {

// The land of the earth: a map of 720 × 360 grey values, rows from north to south, columns
// from longitude −180 eastwards, dark where there is land. Never changes once made; any
// thread.
class LandKaart {
  public:
    // Makes an absent map: everything is sea.
    LandKaart() = default;
    // Reads a map of the whole earth, dark land on light sea, equirectangular, of any size.
    // A null picture makes an absent map; transparent places are sea.
    explicit LandKaart(const QImage& beeld);

    // Reads a PNG file; a file that is missing or damaged makes an absent map, without a
    // word on standard error.
    [[nodiscard]] static LandKaart uitBestand(const std::string& pad);

    // The program's one map, read at the first call: the system's own, else the module's
    // resource "worldmap@2x.png", else absent.
    [[nodiscard]] static const LandKaart& gedeeld();

    // Whether there is land; degrees, north and east positive.
    [[nodiscard]] bool isLand(double breedte, double lengte) const;

    // The map's size, 720 and 360; 0 for an absent map.
    [[nodiscard]] int breedte() const { return breedte_; }
    [[nodiscard]] int hoogte() const { return hoogte_; }

  private:
    int breedte_ = 0;
    int hoogte_ = 0;
    std::vector<std::uint8_t> grijs_;
};

}  // namespace brixtel
