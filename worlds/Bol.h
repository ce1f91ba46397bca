// SPDX-License-Identifier: MIT
// What the globe is made of. Units are the globe's radius, angles degrees.
#pragma once

#include <QImage>
#include <QString>
#include <map>
#include <vector>

#include <glm/vec3.hpp>

#include "connections/Lijn.h"
#include "platform/scene/Node.h"
#include "worlds/LandKaart.h"

namespace brixtel {

struct BolPlaats {
    double breedte;
    double lengte;
};

// The k-th of n places that lie evenly over the globe, from pole to pole.
[[nodiscard]] BolPlaats roosterPlaats(int k, int n);

// The dots on land and, five times thinner, those at sea.
struct BolPunten {
    std::vector<glm::dvec3> land;
    std::vector<glm::dvec3> zee;
};
[[nodiscard]] BolPunten bolPunten(int n, const LandKaart& kaart);

// Parallels and meridians, as pairs of end points.
[[nodiscard]] std::vector<glm::dvec3> bolRaster();

// A thin ring of light, just outside the globe's rim on a plane of 3.1.
[[nodiscard]] QImage bolGloed();

// The arcs, lights and labels of the present connections. Belongs to one globe.
class BolLijnen {
  public:
    struct Opties {
        BolPlaats thuis;
        std::size_t meeste;  // lines that are drawn
    };
    explicit BolLijnen(const Opties& opties);

    // Puts them into the node in place of what it holds.
    void teken(const std::vector<Lijn>& lijnen, platform::Node& in);

    [[nodiscard]] static QString opschrift(const Lijn& lijn);

  private:
    [[nodiscard]] platform::NodePtr lichtje(std::vector<glm::dvec3> baan, std::size_t i) const;
    [[nodiscard]] platform::GeometryPtr label(const QString& tekst) const;

    const Opties opties_;
    platform::GeometryPtr stip_;
    platform::GeometryPtr licht_;
    // By their text, so that what does not change is not drawn anew.
    std::map<QString, platform::GeometryPtr> labels_;
};

}  // namespace brixtel
