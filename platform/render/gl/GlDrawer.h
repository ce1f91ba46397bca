// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"

namespace platform {

// Draws display lists with OpenGL 3.3 into the framebuffer that is bound. All of
// a list is one instanced draw call, whatever is in it; only one of tens of
// thousands of items takes more. Pictures are uploaded once, known again by
// QImage::cacheKey(), and dropped when no list has shown them for a while. A
// list of the same size as one before allocates nothing.
//
// Every member, the destructor included, wants the context current in which it
// was created: it belongs to one thread.
class GlDrawer {
  public:
    struct Options {
        // Texels for all pictures together and records for one draw call; 0
        // means what the driver offers. Pictures that do not fit are kept
        // smaller and drawn stretched.
        int maxTexels = 0;
        int maxRecords = 0;
        // Draws without showing a picture before it is dropped.
        int keepDraws = 300;
    };

    // None if the driver refuses the shaders; it says why on standard error.
    [[nodiscard]] static std::unique_ptr<GlDrawer> create(const Options& options);
    [[nodiscard]] static std::unique_ptr<GlDrawer> create() { return create(Options{}); }
    ~GlDrawer();
    GlDrawer(const GlDrawer&) = delete;
    GlDrawer& operator=(const GlDrawer&) = delete;

    // Fills the framebuffer's lower left `grid.size` pixels: the background,
    // premultiplied, and the list over it; without a background, the list over
    // what is there. Leaves the viewport, blending,
    // program and texture bindings changed.
    void draw(const DisplayList& list, const PixelGrid& grid, std::optional<Rgba> background);

    // Of the last draw; clearing to the background is none.
    [[nodiscard]] int drawCalls() const;

    // Pictures kept at this moment.
    [[nodiscard]] int pictureCount() const;

  private:
    struct Parts;
    explicit GlDrawer(std::unique_ptr<Parts> parts);

    std::unique_ptr<Parts> parts_;
};

}  // namespace platform
