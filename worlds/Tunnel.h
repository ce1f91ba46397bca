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

// The wallpaper's digits: sixteen columns, each of its own brightness, fourteen rows, about
// one digit in seventeen bright. Ordered column by column, from the bottom.
[[nodiscard]] std::vector<TunnelCijfer> tunnelCijfers(platform::RandomSource& toeval);

// The wallpaper: 512 × 512 points, one pixel each; it repeats without a seam. None where
// memory is short.
[[nodiscard]] std::optional<QImage> tunnelBeeld(const std::vector<TunnelCijfer>& cijfers);

// The wallpaper's placement on the wall at a time in seconds: it repeats 6 times round and
// 14 times along the tube, and scrolls by 0.55 repeats a second.
[[nodiscard]] glm::dmat4 tunnelVerloop(double seconden);

// The digits that fly towards the viewer.
[[nodiscard]] platform::ParticleSettings tunnelStroom(bool groot);

}  // namespace brixtel
