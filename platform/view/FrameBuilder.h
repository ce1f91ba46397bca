// SPDX-License-Identifier: MIT
#pragma once

#include <QSizeF>
#include <optional>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/view/Frame.h"

namespace platform {

class SceneView;
class View;

// Fills a frame with what a tree of views shows at one time. Main thread;
// allocates nothing once the frame has grown.
class FrameBuilder {
  public:
    // Empties the frame but for its grid and background. It must outlive the
    // builder, and is whole once the builder is gone.
    FrameBuilder(Frame& frame, double clockTime);
    ~FrameBuilder();
    FrameBuilder(const FrameBuilder&) = delete;
    FrameBuilder& operator=(const FrameBuilder&) = delete;

    // Adds a view and all below it, its frame's zero being the window's.
    void add(View& view);

    // Adds one view's layer tree.
    void addLayers(Layer& root, QPointF origin);

    // Adds a scene, over all that was added before.
    void addScene(SceneView& view, QPointF origin);

    // The clock's time from which the frame looks different.
    [[nodiscard]] double nextChange() const;

  private:
    void add(View& view, QPointF origin);
    void beginPass();

    Frame& frame_;
    const double clockTime_;
    const QRectF clip_;
    std::size_t passes_ = 0;
    double nextChange_;  // of the scenes, and of the passes that are done
    std::optional<DisplayListBuilder> layers_;
};

}  // namespace platform
