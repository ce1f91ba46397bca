// SPDX-License-Identifier: MIT
#include "platform/window/x11/PixelFormat.h"

#include <bit>
#include <cstdlib>
#include <cstring>
#include <limits>

namespace platform {

namespace {

// The values of 8 bits scaled to a mask's bits; white stays white.
std::array<std::uint32_t, 256> spread(std::uint32_t mask) {
    std::array<std::uint32_t, 256> table{};
    if (mask == 0) return table;
    const int shift = std::countr_zero(mask);
    const std::uint64_t top = mask >> shift;
    for (std::uint32_t value = 0; value < table.size(); ++value)
        table[value] = static_cast<std::uint32_t>((value * top + 127) / 255) << shift;
    return table;
}

int brightness(int red, int green, int blue) {
    return 2126 * red + 7152 * green + 722 * blue;
}

long distance(const PixelFormat::PaletteColour& a, int red, int green, int blue, bool grey) {
    if (grey) return std::abs(brightness(a.red, a.green, a.blue) - brightness(red, green, blue));
    const long r = a.red - red, g = a.green - green, b = a.blue - blue;
    return 2 * r * r + 4 * g * g + b * b;
}

}  // namespace

PixelFormat::PixelFormat(const Layout& layout, const Channels& channels)
    : layout_(layout),
      channels_{spread(channels.blue), spread(channels.green), spread(channels.red),
                spread(channels.alpha)} {
    native_ = layout.bitsPerPixel == 32 && channels.red == 0xff0000 && channels.green == 0xff00 &&
              channels.blue == 0xff &&
              layout.leastFirst == (std::endian::native == std::endian::little);
}

PixelFormat::PixelFormat(const Layout& layout, const std::vector<PaletteColour>& palette, bool grey)
    : layout_(layout), nearest_(std::size_t{32} * 32 * 32, 0) {
    for (std::size_t i = 0; i < nearest_.size(); ++i) {
        const auto level = [i](int shift) {
            return static_cast<int>(((i >> shift) & 31) * 255 / 31);
        };
        long least = std::numeric_limits<long>::max();
        for (const PaletteColour& colour : palette) {
            const long d = distance(colour, level(10), level(5), level(0), grey);
            if (d >= least) continue;
            least = d;
            nearest_[i] = colour.pixel;
        }
    }
}

int PixelFormat::bytesPerLine(int width) const {
    const int pad = layout_.scanlinePad;
    return (width * layout_.bitsPerPixel + pad - 1) / pad * pad / 8;
}

std::uint32_t PixelFormat::pixel(std::uint32_t argb) const {
    if (!nearest_.empty())
        return nearest_[(argb >> 9 & 0x7c00) | (argb >> 6 & 0x3e0) | (argb >> 3 & 0x1f)];
    return channels_[0][argb & 255] | channels_[1][argb >> 8 & 255] |
           channels_[2][argb >> 16 & 255] | channels_[3][argb >> 24];
}

void PixelFormat::put(std::uint8_t* row, int x, std::uint32_t value) const {
    const int bits = layout_.bitsPerPixel;
    if (bits < 8) {
        const int perByte = 8 / bits;
        const int place = layout_.leastBitFirst ? x % perByte : perByte - 1 - x % perByte;
        const int shift = place * bits;
        std::uint8_t& byte = row[x / perByte];
        const int mask = ((1 << bits) - 1) << shift;
        byte =
            static_cast<std::uint8_t>((byte & ~mask) | (static_cast<int>(value) << shift & mask));
        return;
    }
    const int bytes = bits / 8;
    std::uint8_t* const at = row + static_cast<std::ptrdiff_t>(x) * bytes;
    for (int i = 0; i < bytes; ++i)
        at[layout_.leastFirst ? i : bytes - 1 - i] = static_cast<std::uint8_t>(value >> (8 * i));
}

void PixelFormat::convert(const std::uint32_t* from, int width, const QRect& rect, std::uint8_t* to,
                          int toWidth, QPoint at) const {
    const std::ptrdiff_t line = bytesPerLine(toWidth);
    for (int y = 0; y < rect.height(); ++y) {
        const std::uint32_t* const source =
            from + static_cast<std::ptrdiff_t>(rect.y() + y) * width + rect.x();
        std::uint8_t* const row = to + (at.y() + y) * line;
        if (native_) {
            const auto bytes = static_cast<std::size_t>(rect.width()) * sizeof *source;
            std::memcpy(row + static_cast<std::ptrdiff_t>(at.x()) * 4, source, bytes);
            continue;
        }
        for (int x = 0; x < rect.width(); ++x)
            put(row, at.x() + x, pixel(source[x]));
    }
}

}  // namespace platform
