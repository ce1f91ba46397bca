// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"

namespace platform {

// Draws display lists with OpenGL 3.3 into the bound framebuffer. A whole list
// is one instanced draw call; only lists of tens of thousands of items take
// more. Uploads each picture once, by QImage::cacheKey(), and drops pictures
// that no list has shown for a while. Allocates nothing for a list of a size
// seen before.
//
// Owns its OpenGL objects. Every member, the destructor included, needs the
// context current in which the drawer was created. One thread: the context's.
class GlDrawer {
  public:
    struct Options {
        // The most texels for all pictures together, and records per draw call;
        // 0 means the driver's limit. Pictures that do not fit are stored
        // smaller and drawn stretched.
        int maxTexels = 0;
        int maxRecords = 0;
        // The number of draws after which an unused picture is dropped.
        int keepDraws = 300;
    };

    // Null if the driver refuses the shaders; standard error says why.
    [[nodiscard]] static std::unique_ptr<GlDrawer> create(const Options& options);
    [[nodiscard]] static std::unique_ptr<GlDrawer> create() { return create(Options{}); }
    ~GlDrawer();
    GlDrawer(const GlDrawer&) = delete;
    GlDrawer& operator=(const GlDrawer&) = delete;

    // Fills the framebuffer's lower left `grid.size` pixels: the background,
    // premultiplied, and the list over it; without a background, the list over
    // the present contents. Changes the viewport, blending, program and texture
    // bindings.
    void draw(const DisplayList& list, const PixelGrid& grid, std::optional<Rgba> background);

    // Multiplies the framebuffer's lower left `grid.size` pixels, alpha included, by the
    // opacity, in [0, 1].
    void fade(const PixelGrid& grid, double opacity);

    // The number for the last draw; clearing to the background does not count.
    [[nodiscard]] int drawCalls() const;

    // The number of stored pictures.
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    explicit GlDrawer(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

}  // namespace platform
