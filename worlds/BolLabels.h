// SPDX-License-Identifier: MIT
// The labels of the globe. Units are the globe's radius.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>

#include "platform/scene/Node.h"

namespace brixtel {

struct BolPlaats;

// A line's name: its country, and the number of earlier lines to that country.
using LijnSleutel = std::pair<std::string, int>;

// The remainder of a jump, which runs out to 0 calmly: a value that jumps, plus the remainder,
// is smooth. Times are the scene's.
class Uitloop {
  public:
    // Takes up a jump by `sprong`, from the new value back to the old one.
    void neem(double sprong, double tijd);
    [[nodiscard]] double op(double tijd) const;

  private:
    [[nodiscard]] double vaartOp(double tijd) const;

    double rest_ = 0.0;
    double vaart_ = 0.0;  // a second
    double begin_ = 0.0;
};

// The labels on the screen: in front of the globe, upright, clear of one another, of the
// home marker and, where there is room, of other countries' dots, and hidden while their
// country is behind the globe. Owned by one globe.
class BolLabels {
  public:
    explicit BolLabels(const BolPlaats& thuis);

    // The label, and the thin line from the label to its country. The line is a child of
    // the label, from (0, 0, 0) to (0, 1, 0).
    struct Opschrift {
        LijnSleutel lijn;
        platform::NodePtr label;
        platform::NodePtr draad;
    };
    // Shows these labels alone, the busiest first; all labels have one parent. A label of a
    // line that was shown before starts from its place on the screen; a new one beside others
    // starts from nothing.
    void zet(std::vector<Opschrift> opschriften);

    // Sets each label's strength and place on the screen, for this camera at this scene
    // time. A label's wanted place is found once a second, for some seconds before and after
    // now, from the turn of the globe; the shown place is a smooth curve along these, so that
    // nothing jumps. After a new list a label glides from its old curve to its new one.
    // Allocates nothing.
    void schik(const platform::Node& camera, double tijd);

  private:
    // A label's wishes at one time, in the screen's units.
    struct Wens {
        double opzij = 0.0;
        double omhoog = 0.0;
        double dekking = 1.0;  // its strength beside the neighbours
    };
    struct Label {
        platform::NodePtr node;  // none: a marker, which stays in place
        platform::NodePtr draad;
        glm::dvec3 plaats{0.0};  // in the parent's frame
        LijnSleutel lijn;
        glm::dvec2 maat{0.0};    // in scene units
        double noorden = 0.0;    // higher for a more northern country
        std::size_t rang = 0;    // 0: the busiest
        int komst = 0;           // the number of the first list that had the line
        bool gezien = false;     // the list before showed the line
        bool komtErbij = false;  // the shown lists had other lines alone
        // The place on the screen, in units as large as those of the globe's middle.
        double x = 0.0, y = 0.0;
        double halveBreedte = 0.0, hoogte = 0.0;
        double schaal = 1.0;   // these units in one scene unit at the label
        double kracht = 0.0;   // 0: behind the globe
        double vanzelf = 0.0;  // height above the dot without neighbours
        double opzij = 0.0;    // way aside, from the side where the neighbours are
        double omhoog = 0.0;   // further height, which clears the neighbours
        // The wishes about now, a second apart, and the point now on the curve along them.
        std::array<Wens, 4> wensen;
        Wens wens;
        // From the curve to the shown values.
        Uitloop schuift, stijgt, verkleurt;
    };

    [[nodiscard]] static Label merk(const glm::dvec3& plaats, const glm::dvec2& maat,
                                    double zuidelijker);
    // The camera, the half of the picture's height in the screen's units, and the frame in
    // which the countries lie at some time.
    struct Blik {
        glm::dmat4 camera;
        double rand = 0.0;
        glm::dmat4 land;
    };
    void volg(const Blik& blik, double tijd);
    void wens(const Blik& blik, std::size_t knoop);
    static void zie(Label& label, const Blik& blik);
    [[nodiscard]] static double naastStip(const Label& label, const Blik& blik);
    [[nodiscard]] static double binnenBeeld(const Label& label, double opzij, double rand);
    void maakRuimte(double rand);
    void mijdStippen();
    [[nodiscard]] double uitDeDrukte(const Label& label) const;
    static void duw(Label& noord, Label& zuid);
    [[nodiscard]] static double deelVan(const Label& een, const Label& ander);
    static void span(const Label& label, const glm::dvec2& weg, const glm::dmat4& camera);
    [[nodiscard]] double sterkte(const Label& label) const;
    static void toon(Label& label, const Blik& blik, double tijd);

    const glm::dvec3 thuis_;
    const platform::Node* ouder_ = nullptr;  // of the labels, while any exist
    std::vector<Label> labels_;              // from north to south, with home's marker
    std::vector<Label> stippen_;             // the countries' dots
    int lijsten_ = 0;
    bool nieuw_ = false;     // a list that has no wishes yet
    double seconde_ = -1.0;  // of the second of the four wishes
};

}  // namespace brixtel
