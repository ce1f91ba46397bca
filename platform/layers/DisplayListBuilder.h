// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

#include "platform/layers/DisplayList.h"
#include "platform/layers/Layer.h"

namespace platform {

// Writes the look of layer trees at one time into a list, one tree over the
// other. Main thread. Drops animations that have ended. Leaves out invisible
// items: outside their clip, fully transparent, or masked away. Allocates
// nothing once the list has grown. A mask whose own layers have masks is a
// programming error.
class DisplayListBuilder {
  public:
    // Empties the list, which must outlive the builder.
    DisplayListBuilder(DisplayList& list, double clockTime);

    // Adds a root layer and its subtree. `origin` is the zero of the root's
    // superlayer, in points of the window; `clip` and `opacity` are those of
    // the surroundings.
    void add(Layer& root, QPointF origin, const QRectF& clip, double opacity = 1.0);

  private:
    struct Place {
        double parentTime;
        QPointF origin;
        QRectF clip;
        double opacity;
        std::int32_t mask;
        bool inMask;
    };

    void reserve(std::size_t layers);
    // Returns the next change, in the parent's time.
    double walk(Layer& layer, const Place& place);
    double walkBelow(Layer& layer, const Place& own, const QRectF& rect, double layerTime);
    double walkMask(Layer& layer, Place& below, const QRectF& rect);
    void emit(const Layer& layer, const Place& place, const QRectF& rect);
    DisplayItem* put(const Layer& layer, int part, const Place& place, const QRectF& rect);

    DisplayList& list_;
    double clockTime_;
    std::uint32_t base_ = 0;
};

}  // namespace platform
