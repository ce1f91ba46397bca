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

// Draws a scene's draw lists with the processor alone, in linear light with
// bloom, as platform/scene/Shading.h says: every pixel, with smooth edges. The
// picture is worked on in tiles, and only those that hold light, or held it the
// time before, are touched at all. The same list, size and scale give the same
// bits on every processor.
//
// Meshes and pictures are prepared once, known again by their ids, and dropped
// when no list has shown them for a while. A list of the same make as the one
// before allocates nothing. Any one thread at a time; threads of its own, owned by
// the drawer, help with large pictures and sleep between them.
class CpuSceneDrawer {
  public:
    struct Options {
        // Draws without showing a mesh or picture before it is dropped.
        int keepDraws = 120;
        // Threads that share a large picture's tiles, the calling one among them, at
        // most 4; 0: as many as the machine has processors. The bits are the same.
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
        // Whether the picture still holds what the last draw left in it. If not,
        // all of it is drawn, black included.
        bool isKept = false;
    };
    // Makes the picture show the list, every pixel opaque. Returns what may have
    // changed, in the picture's pixels, valid until the next draw. Everything is
    // opaque black where the camera or the scale makes no sense.
    std::span<const QRect> draw(const DrawList& list, const PixelBuffer& picture,
                                const Frame& frame);

    // A picture of its own, as RGB32 of `points` × `scale` pixels, rounded; a null
    // image where that is none, or more than there is memory for.
    [[nodiscard]] QImage picture(const DrawList& list, QSizeF points, double scale = 1.0);

    // Numbers of tiles in the last draw.
    struct Counts {
        int tiles = 0;      // of the whole picture
        int drawn = 0;      // cleared and drawn into
        int glowing = 0;    // that the bloom's blur worked on
        int encoded = 0;    // made pixels of
        int blackened = 0;  // had light the time before, and no longer do
    };
    [[nodiscard]] const Counts& counts() const;

    // Kept at this moment.
    [[nodiscard]] int meshCount() const;
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

}  // namespace platform
