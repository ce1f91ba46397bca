// SPDX-License-Identifier: MIT
// The images that a scene is drawn into; private to platform/render.
#pragma once

#include <QSize>

#include "platform/render/gl/GlObjects.h"

namespace platform {

// A storage format of light, and the stored value of one unit of light, which
// leaves room for light brighter than white.
struct SceneFormat {
    GLenum format = GL_RGBA16F;
    float scale = 1.0F;
};

inline constexpr SceneFormat kHalfFloats{GL_RGBA16F, 1.0F};
// Holds up to four times white. The fastest format for a processor to blend, read and filter.
inline constexpr SceneFormat kSixteenBits{GL_RGBA16, 0.25F};
// The driver encodes to sRGB; white is the brightest.
inline constexpr SceneFormat kEightBits{GL_SRGB8_ALPHA8, 1.0F};

// A texture for drawing into: linear, not mipmapped, clamped to its edge.
class GlImage {
  public:
    // False if the driver cannot draw into such an image.
    bool fit(QSize size, GLenum format);
    [[nodiscard]] GLuint framebuffer() const { return framebuffer_.name(); }
    [[nodiscard]] GLuint texture() const { return texture_.name(); }
    [[nodiscard]] QSize size() const { return size_; }
    // Binds the whole image for drawing.
    void target() const;

  private:
    GlTexture texture_;
    GlFramebuffer framebuffer_;
    QSize size_;
    GLenum format_ = 0;
};

// The image that surfaces are drawn into, with depth and several samples per
// pixel on request, and the plain image that results.
class SceneCanvas {
  public:
    struct Options {
        QSize size;
        SceneFormat format;
        int samples = 1;
        bool depth = true;
    };

    // False if the driver cannot draw into such an image.
    bool fit(const Options& options);
    // Binds the canvas for drawing.
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
