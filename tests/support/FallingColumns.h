// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRectF>
#include <QSizeF>
#include <memory>
#include <vector>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/layers/Layer.h"
#include "platform/time/RandomSource.h"

// A layer tree typical for the drawers: columns, each of two overlaid strips of
// digits, visible only through masks. The pieces of a mask fall row by row: a
// gradient as trail and a white cell as head.
class FallingColumns {
  public:
    struct Options {
        QSizeF size;  // points
        int columnWidth = 21;
        int rowHeight = 26;
        double scale = 1.0;  // pixels per point of the strips
        std::uint64_t seed = 1;
    };
    struct Drop {
        int length = 8;  // rows of the trail
        double rowSeconds = 0.1;
        double begin = 0.0;   // the root's local time
        double offset = 0.0;  // seconds part-way in
    };

    explicit FallingColumns(const Options& options);

    // Adds a drop; a column without drops is invisible. Rows count from the
    // top; the head steps onto row 0 one step after the drop's begin.
    void addDrop(int column, const Drop& drop);

    // Adds one to three drops per column, each part-way down at `clock`.
    void fill(double clock);

    // Shows another pair of strips in the column.
    void swapContents(int column);

    [[nodiscard]] int columnCount() const { return static_cast<int>(columns_.size()); }
    [[nodiscard]] QSizeF size() const { return options_.size; }
    [[nodiscard]] platform::Layer& root() { return *root_; }
    [[nodiscard]] platform::DisplayList shown(double clock);
    void show(double clock, platform::DisplayList& list);

  private:
    struct Column {
        std::shared_ptr<platform::Layer> tail, head;
        std::size_t strip = 0;
    };
    [[nodiscard]] QImage strip(const QColor& colour);

    Options options_;
    platform::RandomSource random_;
    int rows_;
    double stripHeight_;
    std::shared_ptr<platform::Layer> root_ = std::make_shared<platform::Layer>();
    std::vector<QImage> tails_, heads_;
    std::vector<Column> columns_;
};
