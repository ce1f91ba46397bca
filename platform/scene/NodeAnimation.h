// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include <glm/vec3.hpp>

#include "platform/animation/Animation.h"

namespace platform {

enum class NodeProperty { Position, Scale };

// Moves what a node shows for a property through its values, in equal segments,
// without changing the node's own value, which shows again afterwards.
struct NodeAnimation {
    NodeProperty property = NodeProperty::Position;
    std::vector<glm::dvec3> values{};
    double duration = 0.25;    // seconds of one pass
    double repeatCount = 0.0;  // passes; 0 means one, kForever no end
    double timeOffset = 0.0;   // starts it part-way in, and the cycle wraps
    TimingFunction function = TimingFunction::linear();  // over each pass

    // At `elapsed` seconds since its begin; none once it has ended, or when it
    // has no values.
    [[nodiscard]] std::optional<glm::dvec3> value(double elapsed) const;
};

}  // namespace platform
