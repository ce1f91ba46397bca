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

// The countries' shapes from a TopoJSON file with an object "countries", found
// by their three-digit ISO numbers.
class Kaart {
  public:
    // Throws std::runtime_error when the text is no such file.
    explicit Kaart(const QByteArray& topoJson);

    // The middle of the country's largest piece of land: its centre of mass on
    // the sphere, or if that lies outside the land, the middle of the widest
    // stretch of land on the same parallel. Gives nothing for a country without
    // a shape, or with one too small for the map.
    [[nodiscard]] std::optional<Plaats> midden(const std::string& nummer) const;

  private:
    using Ring = std::vector<Plaats>;
    using Stuk = std::vector<Ring>;  // the outline, then the holes in it

    std::map<std::string, std::vector<Stuk>> landen_;
};

}  // namespace brixtel
