// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace platform {

// A light at a node. A value: any thread, like any other value.
enum class LightType {
    Omni,     // from the node's position, without fall-off
    Ambient,  // from everywhere
};

struct Light {
    LightType type = LightType::Omni;
    QColor colour = Qt::white;  // sRGB
    double intensity = 1000.0;  // 1000 means 1.0 × the colour

    friend bool operator==(const Light&, const Light&) = default;
};

}  // namespace platform
