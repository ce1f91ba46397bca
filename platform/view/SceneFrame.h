// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <cstdint>

#include "platform/layers/Rgba.h"
#include "platform/scene/DrawList.h"

namespace platform {

// A scene as one part of a window's picture: plain values for the render thread.
// Refilling one reuses its memory.
struct SceneFrame {
    bool isShown = false;       // false: there is no view of a scene here
    std::uint64_t picture = 0;  // another number for whatever looks different
    QRectF frame;               // where in the window, in points, y up
    Rgba background;            // under the scene's own
    int sampleCount = 1;        // per pixel, against jagged edges
    double interval = 0;        // seconds from frame to frame that are wanted; 0: the display's own
    double resolution = 1.0;    // pixels drawn per pixel shown at most, where the processor draws
    bool hasScene = false;
    DrawList list;  // the scene's, if there is one
};

}  // namespace platform
