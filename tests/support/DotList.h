// SPDX-License-Identifier: MIT
#pragma once

#include <glm/gtc/matrix_transform.hpp>

#include "platform/scene/DrawList.h"
#include "tests/support/StandInScenes.h"

namespace platform::test {

// One dot in much black, `x` units of the scene right of the picture's middle.
[[nodiscard]] inline DrawList dotList(float x, double aspect) {
    DrawList list;
    extract(*makeStandIn(QStringLiteral("globe"), 1), aspect, list);
    MeshData dot{.primitive = Primitive::Points,
                 .positions = {glm::vec3(0.0F)},
                 .indices = {0},
                 .pointSize = 3.0};
    DrawBatch batch;
    batch.mesh = std::make_shared<Mesh>(std::move(dot));
    batch.material.diffuse = {0.0F, 0.2F, 0.0F, 1.0F};
    batch.count = 1;
    list.instances = {
        DrawInstance{.world = glm::translate(glm::mat4(1.0F), glm::vec3(x, 0.0F, 0.0F))}};
    list.batches = {batch};
    return list;
}

}  // namespace platform::test
