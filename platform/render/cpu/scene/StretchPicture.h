// SPDX-License-Identifier: MIT
// A picture at another size; private to platform/render.
#pragma once

#include <QRect>
#include <array>
#include <cstdint>
#include <vector>

#include "platform/render/cpu/CpuDrawer.h"

namespace platform {

// Makes a picture of one size from a picture of another size. Every pixel is a mixture of the
// four pixels between whose middles it lies. Owns its tables. Several threads may fill at
// once, each with a desk of its own.
class PictureStretch {
  public:
    // The working space of one thread.
    struct Desk {
        std::array<std::vector<std::uint32_t>, 2> row;
        std::array<int, 2> holds{-1, -1};
    };

    // Sizes in pixels, none empty. Equal sizes as before cost nothing.
    void fit(QSize from, QSize to);
    // Makes a desk large enough, and forgets its contents.
    void fit(Desk& desk) const;
    // The part of `to` that a rectangle of `from` affects.
    [[nodiscard]] QRect reachOf(const QRect& rect) const;
    // Fills a rectangle of `to`. Both pictures have the sizes given to fit().
    void fill(const PixelBuffer& from, const PixelBuffer& to, const QRect& rect, Desk& desk) const;

  private:
    // Two neighbours, and the second one's share in 256ths.
    struct Between {
        int first = 0;
        int second = 0;
        std::uint32_t share = 0;
    };
    static Between betweenAt(int i, int from, int to);

    QSize from_, to_;
    // By the column of `to`; see Between.
    std::vector<std::int32_t> first_, second_;
    std::vector<std::uint32_t> share_;
};

}  // namespace platform
