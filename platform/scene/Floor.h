// SPDX-License-Identifier: MIT
#pragma once

#include "platform/scene/Material.h"

namespace platform {

// The endless plane y = 0 of its node. The floor adds to its own colour `reflectivity` × a
// mirror image of the scene: in full where a reflected thing touches the floor, fading to
// zero `falloffEnd` above. A value, sharing its material: any thread, like any other value.
struct Floor {
    double reflectivity = 0.25;
    double falloffEnd = 0.0;  // units from the floor; 0 means no fall-off
    MaterialPtr material{};
    // (u, v) = (x, z) / textureSpan, from the node's own x and z, before the
    // material's contents transform. The default makes a picture repeated sixty
    // times half a unit wide: a grid of two lines per unit.
    double textureSpan = 30.0;

    friend bool operator==(const Floor&, const Floor&) = default;
};

}  // namespace platform
