// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace platform {

// Blends everything but the background into a colour by the distance to the camera: linear
// from `start` to `end`, in linear light. A value: any thread, like any other value.
struct Fog {
    double start = 0.0;
    double end = 0.0;
    QColor colour = Qt::white;  // sRGB

    [[nodiscard]] bool isActive() const { return end > start; }

    friend bool operator==(const Fog&, const Fog&) = default;
};

}  // namespace platform
