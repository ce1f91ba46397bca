// SPDX-License-Identifier: MIT
// What the globe is made of. Units are the globe's radius, angles degrees.
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

// What is drawn after what. The night behind a label covers the dots and the grid, and
// never an arc or a light. What is written comes last, seen through everything.
enum BolVolgorde : int {
    kVolgGloed = -1,
    kVolgPunten = 1,
    kVolgRaster,
    kVolgGrond,
    kVolgLicht,
    kVolgLetters
};

// As many segments as a circle needs to look round in the highest picture, 4320 pixels.
// `deel`: its radius as a part of the picture's height. A number that four divides, so that
// the shape is as wide as it is high.
[[nodiscard]] int rondeSegmenten(double deel);

// The vertical angle of the globe's camera: the stated one, or wider where an arc would
// leave the picture on its way round. The angle widens softly, and never narrows again,
// so that the globe does not breathe with the connections.
class BolZicht {
  public:
    explicit BolZicht(double graden) : van_(graden), naar_(graden) {}

    // From this scene time on, shows at least this angle. Scene time 0 has no past: the
    // angle is then there at once.
    void vraag(double graden, double tijd);
    [[nodiscard]] double graden(double tijd) const;

  private:
    double van_, naar_;
    double begin_ = 0.0;
};

// The angle that shows a full turn of these points about the y axis of `bol`, in its
// frame, to a camera that looks at the middle of `bol`.
[[nodiscard]] double bolZichtVoor(const std::vector<glm::dvec3>& punten, const platform::Node& bol,
                                  const platform::Node& camera);

// The labels as they are seen: in front of the globe, upright, beside one another
// and the home marker, and gone while their country is behind it. Belongs to one
// globe.
class BolLabels {
  public:
    explicit BolLabels(const BolPlaats& thuis);

    // The label and the thin line that leads from it to its country, a child of the
    // label, from (0, 0, 0) to (0, 1, 0).
    struct Opschrift {
        platform::NodePtr label;
        platform::NodePtr draad;
    };
    // These and no others, the busiest first; all labels have one parent.
    void zet(std::vector<Opschrift> opschriften);

    // Gives each its strength and its place on the screen, as seen by this camera.
    // A function of where they stand alone, and a smooth one: nothing jumps while
    // the globe turns. Nothing is taken from the heap.
    void schik(const platform::Node& camera);

  private:
    struct Label {
        platform::NodePtr node;  // none: home, which stays where it is
        platform::NodePtr draad;
        double noorden = 0.0;  // the higher, the further north
        std::size_t rang = 0;  // 0: the busiest
        // On the screen, in units as large as those of the globe's middle.
        double x = 0.0, y = 0.0;
        double halveBreedte = 0.0, hoogte = 0.0;
        double schaal = 1.0;   // such units in one of the scene's there
        double kracht = 0.0;   // 0: behind the globe
        double vanzelf = 0.0;  // how far up it stands with the room to itself
        double omhoog = 0.0;   // out of the way of the others
    };

    [[nodiscard]] glm::dvec3 plaatsVan(const Label& label) const;
    void zie(Label& label, const glm::dmat4& camera) const;
    [[nodiscard]] static double naastStip(const Label& label, const glm::dmat4& camera);
    void maakRuimte(double rand);
    static void duw(Label& noord, Label& zuid);
    static void span(const Label& label, const glm::dmat4& camera);
    [[nodiscard]] double sterkte(const Label& label) const;

    const glm::dvec3 thuis_;
    const platform::Node* ouder_ = nullptr;  // of the labels, while there are any
    std::vector<Label> labels_;              // from north to south
};

// The arcs, lights and labels of the present connections. Belongs to one globe.
class BolLijnen {
  public:
    struct Opties {
        BolPlaats thuis;
        std::size_t meeste;  // lines that are drawn
    };
    explicit BolLijnen(const Opties& opties);

    // Puts them into the node in place of what it holds. `tijd` is the scene's: the
    // light of a line that stays goes on where it was.
    void teken(const std::vector<Lijn>& lijnen, double tijd, platform::Node& in);

    // To be called whenever the globe or the camera has moved.
    void schik(const platform::Node& camera) { opschriften_.schik(camera); }

    // All points of the arcs that teken() last drew, in the node's frame.
    [[nodiscard]] const std::vector<glm::dvec3>& banen() const { return banen_; }

    // Pictures of labels that were drawn so far.
    [[nodiscard]] int getekend() const { return getekend_; }

    [[nodiscard]] static QString opschrift(const Lijn& lijn);

  private:
    // A light under way: where on its way it was at a scene time, in parts of a trip.
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
    // By their text, so that what does not change is not drawn anew.
    std::map<QString, platform::GeometryPtr> labels_;
    // By country, and how many lines to it came before.
    Reizen reizen_;
    std::vector<glm::dvec3> banen_;
    BolLabels opschriften_;
    int getekend_ = 0;
};

}  // namespace brixtel
