// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <cstdint>

#include "platform/layers/Rgba.h"
#include "platform/scene/DrawList.h"

namespace platform {

// A scene as one part of a window's picture: a plain value, owned by its frame and handed to
// the render thread with it. Refilling it reuses its memory.
struct SceneFrame {
    bool isShown = false;       // false: the pass has no scene
    std::uint64_t picture = 0;  // changes whenever the scene looks different
    QRectF frame;               // the place in the window, in points, y up
    Rgba background;            // below the scene's own background
    int sampleCount = 1;        // per pixel, against jagged edges
    double interval = 0;        // seconds from frame to frame that are wanted; 0: the display's own
    bool hasScene = false;
    DrawList list;  // valid if hasScene
};

}  // namespace platform
