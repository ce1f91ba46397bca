// SPDX-License-Identifier: MIT
#pragma once

#include <glm/vec3.hpp>

namespace brixtel {

// Black fog between two distances from the camera, in units: it begins at the first, and
// hides everything from the second on. No fog unless the second is larger.
struct DrieMist {
    double begin = 0.0;
    double einde = 0.0;
};

// A loop in time, in seconds: from the begin on, the picture is the same again after each
// duration. Without a duration the picture never is.
struct DrieLus {
    double begin = 0.0;
    double duur = 0.0;
};

// A scene's state before its builder adds the content: a line of the table of scenes.
struct DrieStart {
    glm::dvec3 oog{0.0};      // where the camera stands, in units of the scene
    bool naarMidden = false;  // the camera is turned to the origin; else it looks along -z
    double zicht = 60.0;      // field of view, vertical, degrees
    double bloom = 0.0;       // the bloom's intensity
    DrieMist mist;
    double breedte = 0.0;  // half the width that a narrow picture shows whole, at a distance of
                           // 1; 0: the width of 4:3 is enough
    DrieLus lus;
    bool lijnen = false;  // draws lines to countries
};

}  // namespace brixtel
