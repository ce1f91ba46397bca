// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// How much work a scene's picture may cost. Every quality shows the same scene
// in the same colours, with the same glow; they differ in sharpness.
struct SceneQuality {
    int samples = 4;          // per pixel; 1 means none but the pixel's middle
    double resolution = 1.0;  // pixels drawn per pixel shown, along each side; (0, 1]
    // Whether the bloom is gathered and spread with the most care, or on smaller
    // images with fewer steps.
    bool fineBloom = true;
    int anisotropy = 16;  // texture samples along a slanting surface, at most

    friend bool operator==(const SceneQuality&, const SceneQuality&) = default;
};

}  // namespace platform
