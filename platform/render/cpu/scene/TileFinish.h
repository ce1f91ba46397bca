// SPDX-License-Identifier: MIT
// A tile before and after its shapes are drawn; private to platform/render.
#pragma once

#include <glm/vec3.hpp>

#include "platform/render/cpu/scene/SceneTile.h"

namespace platform {

// Fills the tile with one light; every nearness is 0.
void clearTile(SceneTile& tile, const float* rgb);
// The colours of which there is some light.
[[nodiscard]] inline unsigned coloursOf(const glm::vec3& light) {
    return (light.r > 0.0F ? 1U : 0U) | (light.g > 0.0F ? 2U : 0U) | (light.b > 0.0F ? 4U : 0U);
}
// Makes the planes of some colours ready to be drawn into.
void useColours(SceneTile& tile, unsigned colours);
// Starts keeping these colours' light above the threshold of bloom.
void useExcess(SceneTile& tile, unsigned colours);
// Allows pixels to be kept per sample; none is yet.
void sampleNearness(SceneTile& tile);
// The least nearness of the tile's pixels; only before sampleNearness().
float leastNear(const SceneTile& tile);
// Averages the samples' light.
void resolveLight(SceneTile& tile);

}  // namespace platform
