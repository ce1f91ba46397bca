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

// Draws display lists into pictures with OpenGL, without a display server. Owns
// its context. One thread: the one that made it, on which every picture makes
// the context current.
class OffscreenPicture {
  public:
    // Null where there is no OpenGL 3.3.
    [[nodiscard]] static std::unique_ptr<OffscreenPicture> create(const GlDrawer::Options& options);
    [[nodiscard]] static std::unique_ptr<OffscreenPicture> create() {
        return create(GlDrawer::Options{});
    }
    ~OffscreenPicture();
    OffscreenPicture(const OffscreenPicture&) = delete;
    OffscreenPicture& operator=(const OffscreenPicture&) = delete;

    // Draws the list over the background, as ARGB32_Premultiplied of
    // `grid.size`; a null image if that exceeds what the driver can draw into.
    [[nodiscard]] QImage draw(const DisplayList& list, const PixelGrid& grid, Rgba background);

    [[nodiscard]] const std::string& rendererName() const;
    [[nodiscard]] bool isSoftware() const;

    // The drawer. Call after a picture was drawn, which leaves the bindings
    // that the drawer needs.
    [[nodiscard]] GlDrawer& drawer() { return *drawer_; }
    // The number of errors that OpenGL has reported so far (strict builds).
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
