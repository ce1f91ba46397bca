// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
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
    // Opacity of the whole picture, in [0, 1]; below 1 only where the window system
    // does not fade windows itself.
    double opacity = 1.0;
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

// Goes through what a drawer draws of a frame, lowest first: calls
// `scene(const SceneFrame&)` for each visible scene and then
// `layers(const DisplayList&, std::optional<Rgba>)` for what lies over it; the
// background is given where nothing was drawn below.
template <typename Scene, typename Layers>
void forEachVisiblePart(const Frame& frame, Scene scene, Layers layers) {
    std::optional<Rgba> background = frame.background;
    for (std::size_t i = firstVisiblePass(frame); i < frame.passes.size(); ++i) {
        const FramePass& pass = frame.passes[i];
        if (pass.scene.isShown) {
            scene(pass.scene);
            background.reset();
        }
        if (!pass.layers.items.empty() || background) layers(pass.layers, background);
        background.reset();
    }
}

// Writes into `rects` (emptied first) which pixels may differ between two frames.
void findFrameDamage(const Frame& before, const Frame& after, std::vector<QRect>& rects);

}  // namespace platform
