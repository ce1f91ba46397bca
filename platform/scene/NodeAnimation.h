// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include <glm/vec3.hpp>

#include "platform/animation/Animation.h"

namespace platform {

enum class NodeProperty { Position, Scale };

// Moves a node's shown property through values, in equal segments. The node's own value
// is kept, and shows again afterwards. A value: any thread, like any other value.
struct NodeAnimation {
    NodeProperty property = NodeProperty::Position;
    std::vector<glm::dvec3> values{};
    double duration = 0.25;    // seconds per pass
    double repeatCount = 0.0;  // passes; 0 means one, kForever no end
    double timeOffset = 0.0;   // starts the animation part-way in; the cycle wraps
    TimingFunction function = TimingFunction::linear();  // over each pass

    // The value at `elapsed` seconds since the begin; none after the end, or
    // without values.
    [[nodiscard]] std::optional<glm::dvec3> value(double elapsed) const;
};

}  // namespace platform
