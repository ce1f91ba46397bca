// SPDX-License-Identifier: MIT
#include "platform/scene/NodeAnimation.h"

#include <algorithm>
#include <cmath>

#include <glm/common.hpp>

namespace platform {

std::optional<glm::dvec3> NodeAnimation::value(double elapsed) const {
    const double passes = repeatCount == 0.0 ? 1.0 : repeatCount;
    if (values.empty() || elapsed < 0.0 || duration <= 0.0 || elapsed >= duration * passes)
        return std::nullopt;
    const double share = std::fmod(elapsed + timeOffset, duration) / duration;
    const double at = function(share) * static_cast<double>(values.size() - 1);
    const auto segment = std::min(static_cast<std::size_t>(at), values.size() - 1);
    const auto next = std::min(segment + 1, values.size() - 1);
    return glm::mix(values[segment], values[next], at - static_cast<double>(segment));
}

}  // namespace platform
