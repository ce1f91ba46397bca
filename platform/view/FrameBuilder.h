// SPDX-License-Identifier: MIT
#pragma once

#include <QSizeF>
#include <optional>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/view/Frame.h"

namespace platform {

class SceneView;
class View;

// Fills a frame with the picture of a tree of views at one time. Main thread. Allocates
// nothing once the frame has grown.
class FrameBuilder {
  public:
    // Starts the frame's passes anew, and keeps its grid, background and opacity. The frame
    // outlives the builder, and is complete once the builder is destroyed.
    FrameBuilder(Frame& frame, double clockTime);
    ~FrameBuilder();
    FrameBuilder(const FrameBuilder&) = delete;
    FrameBuilder& operator=(const FrameBuilder&) = delete;

    // Adds a view and its subviews. The view's frame lies in the window's space.
    void add(View& view);

    // Adds one view's layer tree.
    void addLayers(Layer& root, QPointF origin);

    // Adds a scene, over everything added before.
    void addScene(SceneView& view, QPointF origin);

    // The clock's time at which the frame's look changes next.
    [[nodiscard]] double nextChange() const;

  private:
    void add(View& view, QPointF origin);
    void beginPass();

    Frame& frame_;
    const double clockTime_;
    const QRectF clip_;
    std::size_t passes_ = 0;
    double nextChange_;  // of the scenes, and of the layers of the finished passes
    std::optional<DisplayListBuilder> layers_;
};

}  // namespace platform
