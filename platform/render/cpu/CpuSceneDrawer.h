// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QRect>
#include <QSizeF>
#include <memory>
#include <span>

#include "platform/render/cpu/CpuDrawer.h"

namespace platform {

struct DrawList;

// Draws a scene's draw lists with the processor alone, by the formulas of
// platform/scene/Shading.h: every pixel, with smooth edges, in linear light with bloom. The
// picture consists of tiles. Only tiles that hold light, or that the picture still shows
// lit, are touched. The same list, size and scale give the same bits on every
// processor.
//
// Meshes and pictures are prepared once, cached by their ids, and dropped when no list has
// shown them for a while. A list of the same structure as the last one allocates nothing. One
// thread at a time. The drawer owns threads that help with large pictures and sleep between
// draws.
class CpuSceneDrawer {
  public:
    struct Options {
        // The number of draws after which an unused mesh or picture is dropped.
        int keepDraws = 120;
        // The most threads that share a large picture's tiles, the calling thread included, at
        // most 4; 0: as many as the machine has processors. Any number gives the same bits.
        int threads = 0;
    };

    explicit CpuSceneDrawer(const Options& options);
    CpuSceneDrawer() : CpuSceneDrawer(Options{}) {}
    ~CpuSceneDrawer();
    CpuSceneDrawer(const CpuSceneDrawer&) = delete;
    CpuSceneDrawer& operator=(const CpuSceneDrawer&) = delete;

    struct Frame {
        double scale = 1.0;  // pixels per point
        // Pixels drawn per pixel shown, along each side, (0, 1]; below 1 the picture
        // is stretched.
        double resolution = 1.0;
        // Whether the picture's memory still holds the last draw into it, of which there may
        // have been others into other memory since: some pictures may be shown in turn.
        // Otherwise every pixel is written, black ones included.
        bool isKept = false;
    };
    // Makes the picture show the list, every pixel opaque. Returns the rectangles that may
    // differ from the last draw, whichever memory that went into, or the whole picture where
    // it is not kept; in the picture's pixels, valid until the next draw. A camera or scale
    // without sense gives opaque black. Throws std::bad_alloc where memory is refused; the
    // drawer then forgets everything, and the next draw is as the first one.
    std::span<const QRect> draw(const DrawList& list, const PixelBuffer& picture,
                                const Frame& frame);

    // Draws into a new RGB32 picture of `points` × `scale` pixels, rounded; null for an empty
    // size or too little memory.
    [[nodiscard]] QImage picture(const DrawList& list, QSizeF points, double scale = 1.0);

    // The numbers of tiles in the last draw; for tests and benchmarks.
    struct Counts {
        int tiles = 0;      // of the whole picture
        int drawn = 0;      // cleared and drawn into
        int glowing = 0;    // reached by the bloom's blur
        int encoded = 0;    // written as pixels
        int blackened = 0;  // whose light has gone since the draw before
    };
    [[nodiscard]] const Counts& counts() const;

    // The numbers of stored meshes and pictures.
    [[nodiscard]] int meshCount() const;
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    Options options_;
    std::unique_ptr<Parts> parts_;  // none after a draw that failed
};

}  // namespace platform
