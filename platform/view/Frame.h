// SPDX-License-Identifier: MIT
#pragma once

#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"
#include "platform/view/SceneFrame.h"

namespace platform {

// One pass of a frame: a scene, and the layers over it. A window's picture is
// its passes, one over the other; only the first has no scene.
struct FramePass {
    SceneFrame scene;
    DisplayList layers;
};

// A window's whole picture at one moment: a plain value, handed from the main
// thread to the window's render thread. Refilling a frame reuses its memory.
struct Frame {
    PixelGrid grid;
    Rgba background;
    std::vector<FramePass> passes;
};

// Where finished frames go.
class FrameSink {
  public:
    virtual ~FrameSink() = default;

    // Takes the frame by swapping it for one whose memory may be used again.
    virtual void submit(Frame& frame) = 0;
};

// The pass from which a drawer need begin: what lies below is hidden by a scene
// that fills the picture.
[[nodiscard]] std::size_t firstVisiblePass(const Frame& frame);

// Writes into `rects` (emptied first) which pixels may differ between two frames.
void findFrameDamage(const Frame& before, const Frame& after, std::vector<QRect>& rects);

}  // namespace platform
