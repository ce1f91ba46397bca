// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/window/x11/Xcb.h"

namespace platform {

// The format of an X visual's pixels, and the conversion from premultiplied
// ARGB. A value: any thread, like any other value.
class PixelFormat {
  public:
    struct Channels {
        std::uint32_t red = 0, green = 0, blue = 0, alpha = 0;
    };
    struct Layout {
        int bitsPerPixel = 32;
        int scanlinePad = 32;       // bits
        bool leastFirst = true;     // bytes of a pixel
        bool leastBitFirst = true;  // pixels of a byte, where it holds several
    };
    // A pixel's number, and the colour that it shows.
    struct PaletteColour {
        std::uint32_t pixel;
        std::uint8_t red, green, blue;
    };

    // Pixels made of bits for each colour.
    PixelFormat(const Layout& layout, const Channels& channels);
    // Pixels that are numbers in a table; the nearest is taken. A grey one looks
    // at brightness alone.
    PixelFormat(const Layout& layout, const std::vector<PaletteColour>& palette, bool grey);

    // Whether its pixels are ours already.
    [[nodiscard]] bool isNative() const { return native_; }

    // Bytes from one row of a picture to the next.
    [[nodiscard]] int bytesPerLine(int width) const;

    // Converts a rectangle of a picture of `width` pixels a row into one of
    // `toWidth`, its upper left pixel to `at`.
    void convert(const std::uint32_t* from, int width, const QRect& rect, std::uint8_t* to,
                 int toWidth, QPoint at) const;

    [[nodiscard]] std::uint32_t pixel(std::uint32_t argb) const;
    [[nodiscard]] int bitsPerPixel() const { return layout_.bitsPerPixel; }

  private:
    void put(std::uint8_t* row, int x, std::uint32_t value) const;

    Layout layout_;
    bool native_ = false;
    std::array<std::array<std::uint32_t, 256>, 4> channels_{};  // blue, green, red, alpha
    std::vector<std::uint32_t> nearest_;                        // by 5 bits each
};

// How to draw in a window of this look. Takes colours of the window's colour
// table where it has one. None where the server does not tell.
[[nodiscard]] std::optional<PixelFormat> pixelFormatFor(xcb_connection_t* connection,
                                                        const WindowLook& look);

}  // namespace platform
