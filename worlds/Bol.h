// SPDX-License-Identifier: MIT
// The parts of the globe. Units are the globe's radius, angles degrees.
#pragma once

#include <QImage>
#include <QString>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <glm/vec3.hpp>

#include "connections/Lijn.h"
#include "platform/scene/Node.h"
#include "worlds/LandKaart.h"

namespace brixtel {

// The distance of a country's dot and of the home marker from the globe's middle.
constexpr double kStipStraal = 1.01;

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

// The labels on the screen: in front of the globe, upright, clear of one another and of the
// home marker, and hidden while their country is behind the globe. Owned by one globe.
class BolLabels {
  public:
    explicit BolLabels(const BolPlaats& thuis);

    // The label, and the thin line from the label to its country. The line is a child of
    // the label, from (0, 0, 0) to (0, 1, 0).
    struct Opschrift {
        platform::NodePtr label;
        platform::NodePtr draad;
    };
    // Shows these labels alone, the busiest first; all labels have one parent.
    void zet(std::vector<Opschrift> opschriften);

    // Sets each label's strength and place on the screen, for this camera. The result is a
    // smooth function of the countries' places alone: nothing jumps while the globe turns.
    // Allocates nothing.
    void schik(const platform::Node& camera);

  private:
    struct Label {
        platform::NodePtr node;  // none: home, whose marker stays in place
        platform::NodePtr draad;
        double noorden = 0.0;  // higher for a more northern country
        std::size_t rang = 0;  // 0: the busiest
        // The place on the screen, in units as large as those of the globe's middle.
        double x = 0.0, y = 0.0;
        double halveBreedte = 0.0, hoogte = 0.0;
        double schaal = 1.0;   // these units in one scene unit at the label
        double kracht = 0.0;   // 0: behind the globe
        double vanzelf = 0.0;  // height above the dot without neighbours
        double omhoog = 0.0;   // further height that clears the neighbours
    };

    [[nodiscard]] glm::dvec3 plaatsVan(const Label& label) const;
    void zie(Label& label, const glm::dmat4& camera) const;
    [[nodiscard]] static double naastStip(const Label& label, const glm::dmat4& camera);
    void maakRuimte(double rand);
    static void duw(Label& noord, Label& zuid);
    static void span(const Label& label, const glm::dmat4& camera);
    [[nodiscard]] double sterkte(const Label& label) const;

    const glm::dvec3 thuis_;
    const platform::Node* ouder_ = nullptr;  // of the labels, while any exist
    std::vector<Label> labels_;              // from north to south
};

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
    void schik(const platform::Node& camera) { opschriften_.schik(camera); }

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
    using Reizen = std::map<std::pair<std::string, int>, Reis>;

    [[nodiscard]] Reis reisVan(const Reizen::key_type& sleutel, std::size_t i, double tijd) const;
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
    // The trips by country, and by the number of earlier lines to that country.
    Reizen reizen_;
    std::vector<glm::dvec3> banen_;
    BolLabels opschriften_;
    int getekend_ = 0;
};

}  // namespace brixtel
