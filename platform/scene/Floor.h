// SPDX-License-Identifier: MIT
#pragma once

#include "platform/scene/Material.h"

namespace platform {

// The endless plane y = 0 of its node. It adds a mirror image of the scene to
// its own colour: `reflectivity` × what is reflected, full where the reflected
// thing touches the floor, none where it is `falloffEnd` away from it.
struct Floor {
    double reflectivity = 0.25;
    double falloffEnd = 0.0;  // units from the floor; 0 means no fall-off
    MaterialPtr material{};
    // (u, v) = (x, z) / textureSpan before the material's contents transform,
    // with the node's own x and z. At this span a picture that is repeated sixty
    // times is half a unit wide: two lines of a grid to the unit.
    double textureSpan = 30.0;

    friend bool operator==(const Floor&, const Floor&) = default;
};

}  // namespace platform
