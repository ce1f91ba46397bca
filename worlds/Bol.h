// SPDX-License-Identifier: MIT
// The parts of the globe. Units are the globe's radius, angles degrees.
#pragma once

#include <QImage>
#include <QString>
#include <map>
#include <string>
#include <vector>

#include <glm/vec3.hpp>

#include "connections/Lijn.h"
#include "platform/scene/Node.h"
#include "worlds/BolLabels.h"
#include "worlds/LandKaart.h"

namespace brixtel {

// The distance of a country's dot and of the home marker from the globe's middle.
constexpr double kStipStraal = 1.01;

// The time of one turn of the globe, in seconds.
constexpr double kOmwenteling = 60.0;

// The soft step: 0 below 0, 1 above 1, and level at both ends of the way between.
[[nodiscard]] double zacht(double deel);

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

// A thin ring of light, just outside the globe's rim on a plane of 3.1 units.
[[nodiscard]] QImage bolGloed();

// The drawing order. The night behind a label covers the dots and the grid, and never an
// arc or a light. Letters come last and show through everything.
enum BolVolgorde : int {
    kVolgGloed = -1,
    kVolgPunten = 1,
    kVolgRaster,
    kVolgGrond,
    kVolgLicht,
    kVolgLetters
};

// The number of segments that a circle needs to look round in the highest picture, 4320
// pixels. `deel` is the circle's radius as a part of the picture's height. The number is a
// multiple of four, so that the shape is as wide as it is high.
[[nodiscard]] int rondeSegmenten(double deel);

// The vertical angle of the globe's camera: the scene's own angle, or a wider one where an
// arc would leave the picture during a turn. The angle widens softly and never narrows, so
// that the globe does not pulse with the connections.
class BolZicht {
  public:
    explicit BolZicht(double graden) : van_(graden), naar_(graden) {}

    // Shows at least this angle from this scene time on. At scene time 0 the angle takes
    // effect at once.
    void vraag(double graden, double tijd);
    [[nodiscard]] double graden(double tijd) const;

  private:
    double van_, naar_;
    double begin_ = 0.0;
};

// The angle that shows a full turn of these points about the y axis of `bol`, to a camera
// that looks at the middle of `bol`. The points are in the frame of `bol`.
[[nodiscard]] double bolZichtVoor(const std::vector<glm::dvec3>& punten, const platform::Node& bol,
                                  const platform::Node& camera);

// The arcs, lights and labels of the present connections. Owned by one globe.
class BolLijnen {
  public:
    struct Opties {
        BolPlaats thuis;
        std::size_t meeste;  // lines that are drawn
    };
    explicit BolLijnen(const Opties& opties);

    // Replaces the node's content by these connections. `tijd` is the scene's: the light of
    // a line that stays continues from its place.
    void teken(const std::vector<Lijn>& lijnen, double tijd, platform::Node& in);

    // Arranges the labels. To be called whenever the globe or the camera has moved.
    void schik(const platform::Node& camera, double tijd) { opschriften_.schik(camera, tijd); }

    // All points of the arcs that teken() last drew, in the node's frame.
    [[nodiscard]] const std::vector<glm::dvec3>& banen() const { return banen_; }

    // The number of label pictures drawn so far.
    [[nodiscard]] int getekend() const { return getekend_; }

    [[nodiscard]] static QString opschrift(const Lijn& lijn);

  private:
    // A moving light: its place at a scene time, in parts of a trip.
    struct Reis {
        double deel = 0.0;
        double tijd = 0.0;
        double duur = 1.0;

        [[nodiscard]] double deelOp(double nu) const;
    };
    using Reizen = std::map<LijnSleutel, Reis>;

    [[nodiscard]] Reis reisVan(const LijnSleutel& sleutel, std::size_t i, double tijd) const;
    [[nodiscard]] platform::NodePtr lichtje(std::vector<glm::dvec3> baan, const Reis& reis) const;
    [[nodiscard]] platform::NodePtr label(const QString& tekst);
    [[nodiscard]] platform::GeometryPtr letters(const QString& tekst);

    const Opties opties_;
    platform::GeometryPtr stip_;
    platform::GeometryPtr licht_;
    platform::GeometryPtr grond_;
    platform::GeometryPtr draad_;
    // The labels by their text, so that unchanged ones are not drawn anew.
    std::map<QString, platform::GeometryPtr> labels_;
    Reizen reizen_;
    std::vector<glm::dvec3> banen_;
    BolLabels opschriften_;
    int getekend_ = 0;
};

}  // namespace brixtel
