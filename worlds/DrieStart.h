// SPDX-License-Identifier: MIT
#pragma once

#include <glm/vec3.hpp>

namespace brixtel {

// Black fog, from where it begins to where nothing is seen through it, in units from the
// camera. None unless it ends beyond its begin.
struct DrieMist {
    double begin = 0.0;
    double einde = 0.0;
};

// What a scene starts from, before its builder adds its content: a line of the table of
// scenes.
struct DrieStart {
    glm::dvec3 oog{0.0};      // where the camera stands, in units of the scene
    bool naarMidden = false;  // the camera is turned to the origin; else it looks along -z
    double zicht = 60.0;      // field of view, vertical, degrees
    double bloom = 0.0;       // the bloom's intensity
    DrieMist mist;
    double breedte = 0.0;  // half the width of what a narrow picture shows whole, at a distance
                           // of 1; 0: what 4:3 shows will do
};

}  // namespace brixtel
