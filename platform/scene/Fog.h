// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace platform {

// Takes everything but the background into its colour with the distance to the
// camera, linearly from `start` to `end`, in linear light.
struct Fog {
    double start = 0.0;
    double end = 0.0;
    QColor colour = Qt::white;  // sRGB

    [[nodiscard]] bool isActive() const { return end > start; }

    friend bool operator==(const Fog&, const Fog&) = default;
};

}  // namespace platform
