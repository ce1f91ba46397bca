// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QImage>
#include <QPointF>
#include <optional>
#include <vector>

#include <glm/mat4x4.hpp>

#include "platform/scene/ParticleSystem.h"
#include "platform/time/RandomSource.h"

namespace brixtel {

// One digit of the wallpaper, in points of the picture, y up.
struct TunnelCijfer {
    bool een;
    QPointF linksonder;
    QColor kleur;
};

// The wallpaper's digits: sixteen columns of their own brightness, fourteen rows,
// about one digit in seventeen bright. Column by column, from the bottom.
[[nodiscard]] std::vector<TunnelCijfer> tunnelCijfers(platform::RandomSource& toeval);

// The wallpaper: 512 × 512 points, one pixel each; it repeats without a seam. None
// where there is no memory for it.
[[nodiscard]] std::optional<QImage> tunnelBeeld(const std::vector<TunnelCijfer>& cijfers);

// How the wallpaper lies on the wall after so many seconds: it repeats 6 times
// round and 14 times along the tube, and scrolls by 0.55 repeats a second.
[[nodiscard]] glm::dmat4 tunnelVerloop(double seconden);

// The digits that fly towards the viewer.
[[nodiscard]] platform::ParticleSettings tunnelStroom(bool groot);

}  // namespace brixtel
