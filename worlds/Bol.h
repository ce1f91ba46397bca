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

// What is drawn after what. Light that only adds up comes after the dots, and what
// is written comes last: the more so as it is seen through everything.
enum BolVolgorde : int { kVolgGloed = -1, kVolgPunten = 1, kVolgLicht, kVolgGrond, kVolgLetters };

// The labels as they are seen: in front of the globe, upright, beside one another
// and the home marker, and gone while their country is behind it. Belongs to one
// globe.
class BolLabels {
  public:
    explicit BolLabels(const BolPlaats& thuis);

    // These and no others, the busiest first; all have one parent.
    void zet(std::vector<platform::NodePtr> labels);

    // Gives each its strength and its place on the screen, as seen by this camera.
    // A function of where they stand alone, and a smooth one: nothing jumps while
    // the globe turns. Nothing is taken from the heap.
    void schik(const platform::Node& camera);

  private:
    struct Label {
        platform::NodePtr node;  // none: home, which stays where it is
        double noorden = 0.0;    // the higher, the further north
        std::size_t rang = 0;    // 0: the busiest
        // On the screen, in units as large as those of the globe's middle.
        double x = 0.0, y = 0.0;
        double halveBreedte = 0.0, hoogte = 0.0;
        double schaal = 1.0;  // such units in one of the scene's there
        double kracht = 0.0;  // 0: behind the globe
        double omhoog = 0.0;  // out of the way of the others
    };

    [[nodiscard]] glm::dvec3 plaatsVan(const Label& label) const;
    void zie(Label& label, const glm::dmat4& camera) const;
    [[nodiscard]] static double naastStip(const Label& label, const glm::dmat4& camera);
    void maakRuimte(double rand);
    static void duw(Label& noord, Label& zuid);
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

    // Puts them into the node in place of what it holds.
    void teken(const std::vector<Lijn>& lijnen, platform::Node& in);

    // To be called whenever the globe or the camera has moved.
    void schik(const platform::Node& camera) { opschriften_.schik(camera); }

    // Pictures of labels that were drawn so far.
    [[nodiscard]] int getekend() const { return getekend_; }

    [[nodiscard]] static QString opschrift(const Lijn& lijn);

  private:
    [[nodiscard]] platform::NodePtr lichtje(std::vector<glm::dvec3> baan, std::size_t i) const;
    [[nodiscard]] platform::NodePtr label(const QString& tekst);
    [[nodiscard]] platform::GeometryPtr letters(const QString& tekst);

    const Opties opties_;
    platform::GeometryPtr stip_;
    platform::GeometryPtr licht_;
    platform::GeometryPtr grond_;
    // By their text, so that what does not change is not drawn anew.
    std::map<QString, platform::GeometryPtr> labels_;
    BolLabels opschriften_;
    int getekend_ = 0;
};

}  // namespace brixtel
