// SPDX-License-Identifier: MIT
#include "platform/scene/Camera.h"

#include <glm/gtc/matrix_transform.hpp>

#include "platform/scene/Transform.h"

namespace platform {

glm::dmat4 Camera::projection(double aspect) const {
    return glm::perspective(radians(fieldOfView), aspect, zNear, zFar);
}

}  // namespace platform
