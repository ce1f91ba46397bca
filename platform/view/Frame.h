// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/layers/Rgba.h"
#include "platform/view/SceneFrame.h"

namespace platform {

// One pass of a frame: a scene, and the layers over the scene. The passes of a frame lie one
// over the other. Only the first pass has no scene.
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

// Receives finished frames, on the main thread.
class FrameSink {
  public:
    virtual ~FrameSink() = default;

    // Takes the frame, and leaves another frame in its place, whose memory may be reused.
    virtual void submit(Frame& frame) = 0;
};

// The index of the lowest pass that a drawer must draw: a scene that fills the picture hides
// the passes below.
[[nodiscard]] std::size_t firstVisiblePass(const Frame& frame);

// Visits the visible parts of a frame, lowest first: calls `scene(const SceneFrame&)` for a
// visible scene, and then `layers(const DisplayList&, std::optional<Rgba>)` for the layers
// over that scene. The layers receive the frame's background where no part was drawn below
// them.
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

// Replaces the contents of `rects` by the pixels that may differ between two frames.
void findFrameDamage(const Frame& before, const Frame& after, std::vector<QRect>& rects);

}  // namespace platform
