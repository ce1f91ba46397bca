// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The amount of work that a scene's picture may cost. Every quality shows the
// same scene in the same colours and with the same glow; only sharpness
// differs. A value: any thread, like any other value.
struct SceneQuality {
    int samples = 4;          // per pixel; 1 means the pixel's middle only
    double resolution = 1.0;  // pixels drawn per pixel shown, along each side; (0, 1]
    // Whether the bloom is computed with the most care, or on smaller images
    // with fewer steps.
    bool fineBloom = true;
    int anisotropy = 16;  // most texture samples along a slanting surface

    friend bool operator==(const SceneQuality&, const SceneQuality&) = default;
};

}  // namespace platform
