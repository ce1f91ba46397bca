// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <memory>
#include <string>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/render/gl/GlDrawer.h"

namespace platform {

class EglDisplay;
class GlContext;

// Draws display lists into pictures with OpenGL and without any display server.
// Belongs to the thread that made it, on which its context becomes current with
// every picture.
class OffscreenPicture {
  public:
    // None where there is no OpenGL 3.3.
    [[nodiscard]] static std::unique_ptr<OffscreenPicture> create(const GlDrawer::Options& options);
    [[nodiscard]] static std::unique_ptr<OffscreenPicture> create() {
        return create(GlDrawer::Options{});
    }
    ~OffscreenPicture();
    OffscreenPicture(const OffscreenPicture&) = delete;
    OffscreenPicture& operator=(const OffscreenPicture&) = delete;

    // The list over the background, as ARGB32_Premultiplied of `grid.size`; a
    // null image if that is more than the driver can draw into.
    [[nodiscard]] QImage draw(const DisplayList& list, const PixelGrid& grid, Rgba background);

    [[nodiscard]] const std::string& rendererName() const;
    [[nodiscard]] bool isSoftware() const;

    // What draws; wants a picture to have been drawn, which leaves everything
    // bound that it needs.
    [[nodiscard]] GlDrawer& drawer() { return *drawer_; }
    // How many errors OpenGL has reported so far (strict builds).
    [[nodiscard]] int errors() const;

  private:
    OffscreenPicture(std::unique_ptr<GlContext> context, std::unique_ptr<GlDrawer> drawer);
    bool resize(QSize size);

    std::unique_ptr<GlContext> context_;
    std::unique_ptr<GlDrawer> drawer_;
    QSize size_;
    unsigned framebuffer_ = 0;
    unsigned renderbuffer_ = 0;
};

}  // namespace platform
