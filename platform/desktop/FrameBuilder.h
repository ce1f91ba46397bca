// SPDX-License-Identifier: MIT
#pragma once

#include <QSizeF>

#include "platform/desktop/Frame.h"
#include "platform/layers/DisplayListBuilder.h"

namespace platform {

class View;

// Fills a frame with what a tree of views shows at one time. Main thread;
// allocates nothing once the frame has grown.
class FrameBuilder {
  public:
    // Empties the frame but for its grid and background. It must outlive the
    // builder.
    FrameBuilder(Frame& frame, double clockTime);

    // Adds a view and all below it, its frame's zero being the window's.
    void add(View& view);

    // Adds one view's layer tree.
    void addLayers(Layer& root, QPointF origin);

    // The clock's time from which the frame looks different.
    [[nodiscard]] double nextChange() const;

  private:
    void add(View& view, QPointF origin);

    Frame& frame_;
    const QRectF clip_;
    DisplayListBuilder layers_;
};

}  // namespace platform
