// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>
#include <vector>

#include "platform/layers/Layer.h"
#include "platform/time/RandomSource.h"

// Layer trees with every feature of a drawer: edges between pixels, all kinds
// of filling, see-through colours, fitting and stretched pictures, clips, masks
// in masked layers, animations.
class RandomTree {
  public:
    // `size` in points, `scale` in pixels per point. Animations begin at `clock`.
    RandomTree(std::uint64_t seed, QSizeF size, double scale, double clock);

    [[nodiscard]] platform::Layer& root() { return *root_; }

    // Changes some values of some layers, but not the tree.
    void change();

  private:
    std::shared_ptr<platform::GradientLayer> layer(const QSizeF& within, int depth, bool inMask);
    void place(platform::Layer& layer, const QSizeF& within);
    void fill(platform::GradientLayer& layer);
    void animate(platform::Layer& layer);
    [[nodiscard]] QImage picture(const QSizeF& points);
    [[nodiscard]] QColor colour();

    platform::RandomSource random_;
    QSizeF size_;
    double scale_;
    double clock_;
    std::vector<platform::GradientLayer*> all_;
    std::shared_ptr<platform::GradientLayer> root_;
};
