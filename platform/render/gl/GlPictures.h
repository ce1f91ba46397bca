// SPDX-License-Identifier: MIT
// Pictures that a drawer keeps in video memory; private to platform/render.
#pragma once

#include <QImage>
#include <QSize>
#include <cstdint>
#include <unordered_map>

#include "platform/render/gl/GlProgram.h"

namespace platform {

// All pictures lie one after another, row by row, in one buffer that the shader
// reads texel by texel. Pictures of any shape thus share one draw call, no
// picture is too large for a texture, and stretching interpolates the same on
// every driver.
class GlPictures {
  public:
    // Limits as in GlDrawer::Options; `maxTexels` is at most the driver's
    // limit.
    GlPictures(int maxTexels, int keepDraws);

    struct Place {
        int first = 0;  // texel
        QSize size;     // as stored; empty when there was no room
    };

    // The picture's place for the present draw; uploads a new picture.
    Place place(const QImage& image);

    // Ends a draw: drops pictures unused for a while.
    void endDraw();

    void bindTo(int unit) const { buffer_.bindTo(unit); }
    [[nodiscard]] int count() const { return static_cast<int>(kept_.size()); }

  private:
    struct Kept {
        Place place;
        std::uint64_t lastDraw = 0;
    };

    Place upload(const QImage& image);
    // The first texel of a free stretch of that length; -1 if there is none.
    int reserve(std::int64_t texels);
    int firstGap(std::int64_t texels) const;
    void dropUnusedFor(std::uint64_t draws);

    GlTexelBuffer buffer_;
    std::int64_t maxTexels_;
    std::uint64_t keepDraws_;
    std::uint64_t draw_ = 1;
    std::unordered_map<qint64, Kept> kept_;
};

}  // namespace platform
