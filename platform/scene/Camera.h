// SPDX-License-Identifier: MIT
#pragma once

#include <glm/mat4x4.hpp>

namespace platform {

// The lens of a node, which looks down its own −z. A value: any thread, like any other value.
struct Camera {
    double fieldOfView = 60.0;  // vertical, degrees
    double zNear = 1.0;
    double zFar = 100.0;
    bool hdr = false;  // false: no bloom
    double bloomIntensity = 0.0;
    double bloomThreshold = 1.0;   // linear light
    double bloomBlurRadius = 4.0;  // points; the blur's σ is half of it
    // When false, exposure is linear and clamped at 1. Drawers have only that exposure.
    bool exposureAdaptation = true;

    // Projects to clip space, z from −1 at zNear to 1 at zFar. aspect = width / height.
    [[nodiscard]] glm::dmat4 projection(double aspect) const;

    friend bool operator==(const Camera&, const Camera&) = default;
};

}  // namespace platform
