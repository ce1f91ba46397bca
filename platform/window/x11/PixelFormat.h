// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/window/x11/Xcb.h"

namespace platform {

// The format of an X visual's pixels, and the conversion from premultiplied ARGB. A plain
// value: any thread.
class PixelFormat {
  public:
    struct Channels {
        std::uint32_t red = 0, green = 0, blue = 0, alpha = 0;
    };
    struct Layout {
        int bitsPerPixel = 32;
        int scanlinePad = 32;       // bits
        bool leastFirst = true;     // order of a pixel's bytes
        bool leastBitFirst = true;  // order of the pixels in a byte that holds several
    };
    // A pixel's number and its colour.
    struct PaletteColour {
        std::uint32_t pixel;
        std::uint8_t red, green, blue;
    };

    // A format with bits for each colour in a pixel.
    PixelFormat(const Layout& layout, const Channels& channels);
    // A format of pixels that index a table; the nearest colour is taken. A grey format
    // compares brightness alone.
    PixelFormat(const Layout& layout, const std::vector<PaletteColour>& palette, bool grey);

    // Whether the format is premultiplied ARGB itself.
    [[nodiscard]] bool isNative() const { return native_; }

    // Bytes from one row of a picture to the next.
    [[nodiscard]] int bytesPerLine(int width) const;

    // Converts `rect` of a picture of `width` pixels a row into a picture of `toWidth`
    // pixels a row, with its upper left pixel at `at`.
    void convert(const std::uint32_t* from, int width, const QRect& rect, std::uint8_t* to,
                 int toWidth, QPoint at) const;

    [[nodiscard]] std::uint32_t pixel(std::uint32_t argb) const;
    [[nodiscard]] int bitsPerPixel() const { return layout_.bitsPerPixel; }

  private:
    void put(std::uint8_t* row, int x, std::uint32_t value) const;

    Layout layout_;
    bool native_ = false;
    std::array<std::array<std::uint32_t, 256>, 4> channels_{};  // blue, green, red, alpha
    std::vector<std::uint32_t> nearest_;                        // by 5 bits of each colour
};

// The format for a window of this look. Allocates colours in the window's colour table
// where it has one. None where the server does not report the visual.
[[nodiscard]] std::optional<PixelFormat> pixelFormatFor(xcb_connection_t* connection,
                                                        const WindowLook& look);

}  // namespace platform
