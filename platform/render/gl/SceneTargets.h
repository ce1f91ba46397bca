// SPDX-License-Identifier: MIT
// The images that a scene is drawn into; private to platform/render.
#pragma once

#include <QSize>

#include "platform/render/gl/GlObjects.h"

namespace platform {

// How light is kept: what one unit is written as, so that brighter than white
// fits too.
struct SceneFormat {
    GLenum format = GL_RGBA16F;
    float scale = 1.0F;
};

inline constexpr SceneFormat kHalfFloats{GL_RGBA16F, 1.0F};
// Up to four times white. What a processor blends, reads and filters fastest.
inline constexpr SceneFormat kSixteenBits{GL_RGBA16, 0.25F};
// Encoded by the driver; nothing is brighter than white.
inline constexpr SceneFormat kEightBits{GL_SRGB8_ALPHA8, 1.0F};

// A texture that is drawn into. Linear, not mipmapped, clamped to its edge.
class GlImage {
  public:
    // False if the driver cannot draw into that.
    bool fit(QSize size, GLenum format);
    [[nodiscard]] GLuint framebuffer() const { return framebuffer_.name(); }
    [[nodiscard]] GLuint texture() const { return texture_.name(); }
    [[nodiscard]] QSize size() const { return size_; }
    // Binds it to be drawn into, all of it.
    void target() const;

  private:
    GlTexture texture_;
    GlFramebuffer framebuffer_;
    QSize size_;
    GLenum format_ = 0;
};

// The image that surfaces are drawn into, with depth and several samples per
// pixel where asked, and the plain image that it ends up as.
class SceneCanvas {
  public:
    struct Options {
        QSize size;
        SceneFormat format;
        int samples = 1;
        bool depth = true;
    };

    // False if the driver cannot draw into that.
    bool fit(const Options& options);
    // Binds it to be drawn into.
    void target() const;
    // Averages the samples; returns the draw calls.
    int resolve() const;

    [[nodiscard]] const GlImage& image() const { return image_; }
    [[nodiscard]] const Options& options() const { return options_; }

  private:
    bool fitSamples();

    Options options_;
    bool complete_ = false;
    GlImage image_;
    GlFramebuffer framebuffer_;
    GlRenderbuffer colour_;
    GlRenderbuffer depth_;
};

}  // namespace platform
