// SPDX-License-Identifier: MIT
#include "platform/scene/Camera.h"

#include <algorithm>
#include <cmath>

#include <glm/gtc/matrix_transform.hpp>

#include "platform/scene/Transform.h"

namespace platform {

namespace {
constexpr double kNarrowest = 4.0 / 3.0;
constexpr double kSquare = 1.0;
}  // namespace

double Camera::verticalAngle(double aspect) const {
    if (aspect >= kNarrowest) return fieldOfView;
    const double width = std::tan(0.5 * radians(fieldOfView)) * kNarrowest;
    const double wanted = std::max(width, subjectWidth);
    const double share = std::min(1.0, (kNarrowest - aspect) / (kNarrowest - kSquare));
    const double seen = width + (wanted - width) * share;
    return 2.0 * std::atan(seen / aspect) * 180.0 / kPi;
}

double Camera::heightShare(double aspect) const {
    return std::tan(0.5 * radians(fieldOfView)) / std::tan(0.5 * radians(verticalAngle(aspect)));
}

glm::dmat4 Camera::projection(double aspect) const {
    return glm::perspective(radians(verticalAngle(aspect)), aspect, zNear, zFar);
}

}  // namespace platform
