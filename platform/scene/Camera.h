// SPDX-License-Identifier: MIT
#pragma once

#include <glm/mat4x4.hpp>

namespace platform {

// The lens of a node, which looks down its own −z. A value: any thread, like any other value.
struct Camera {
    double fieldOfView = 60.0;  // vertical, degrees, in a picture at least 4:3 wide
    // Half the subject's width at a distance of 1. A picture that is square, or higher than
    // wide, shows at least the subject's width; 0: no subject.
    double subjectWidth = 0.0;
    double zNear = 1.0;
    double zFar = 100.0;
    bool hdr = false;  // false: no bloom
    double bloomIntensity = 0.0;
    double bloomThreshold = 1.0;   // linear light
    double bloomBlurRadius = 4.0;  // points; the blur's σ is half of it
    // When false, exposure is linear and clamped at 1. Drawers have only that exposure.
    bool exposureAdaptation = true;

    // The vertical angle in degrees of a picture of this shape. A picture narrower than 4:3
    // shows the same width as a picture of 4:3, or the subject's width if that is larger.
    // aspect = width / height.
    [[nodiscard]] double verticalAngle(double aspect) const;

    // The size of a thing in parts of the picture's height, over the size at fieldOfView. 1 in
    // a picture at least 4:3 wide, less in a narrower one.
    [[nodiscard]] double heightShare(double aspect) const;

    // Projects to clip space, z from −1 at zNear to 1 at zFar. aspect = width / height.
    [[nodiscard]] glm::dmat4 projection(double aspect) const;

    friend bool operator==(const Camera&, const Camera&) = default;
};

}  // namespace platform
