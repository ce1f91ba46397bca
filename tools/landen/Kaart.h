// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace brixtel {

// A place on the globe in degrees, north and east positive.
struct Plaats {
    double breedte = 0.0;
    double lengte = 0.0;

    bool operator==(const Plaats&) const = default;
};

// The countries' shapes from a TopoJSON file with an object "countries", each
// known by its three-digit ISO number.
class Kaart {
  public:
    // Throws std::runtime_error when this is no such file.
    explicit Kaart(const QByteArray& topoJson);

    // The middle of the country's largest piece of land: its centre of mass on
    // the sphere, or where that lies outside, the middle of the widest stretch
    // of land on the same parallel. Nothing for a country without a shape, or
    // whose shape is too small for the map.
    [[nodiscard]] std::optional<Plaats> midden(const std::string& nummer) const;

  private:
    using Ring = std::vector<Plaats>;
    using Stuk = std::vector<Ring>;  // the outline, then the holes in it

    std::map<std::string, std::vector<Stuk>> landen_;
};

}  // namespace brixtel
