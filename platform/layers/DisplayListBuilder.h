// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

#include "platform/layers/DisplayList.h"
#include "platform/layers/Layer.h"

namespace platform {

// Asks layer trees what they look like at one time and writes it down, one tree
// over the other. Main thread. Drops animations that have ended. What cannot be
// seen is left out: outside its clip, fully transparent, or masked away. Once
// the list has grown to its size nothing is allocated. A mask whose own layers
// have masks is a programming error.
class DisplayListBuilder {
  public:
    // Empties the list. It must outlive the builder.
    DisplayListBuilder(DisplayList& list, double clockTime);

    // Adds a root layer and all below it. `origin` is where the root's
    // superlayer would have its zero, in points of the window; `clip` and
    // `opacity` are those of what it lies in.
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
