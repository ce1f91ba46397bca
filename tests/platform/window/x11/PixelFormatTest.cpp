// SPDX-License-Identifier: MIT
#include "platform/window/x11/PixelFormat.h"

#include <gtest/gtest.h>

using platform::PixelFormat;

namespace {

const PixelFormat::Channels kUsual{.red = 0xff0000, .green = 0xff00, .blue = 0xff, .alpha = 0};

TEST(PixelFormat, TheUsualOneIsOurs) {
    EXPECT_TRUE(PixelFormat({}, kUsual).isNative());
    EXPECT_FALSE(PixelFormat({.leastFirst = false}, kUsual).isNative());
    EXPECT_FALSE(PixelFormat({.bitsPerPixel = 24}, kUsual).isNative());
    EXPECT_FALSE(
        PixelFormat({}, {.red = 0xff, .green = 0xff00, .blue = 0xff0000, .alpha = 0}).isNative());
}

TEST(PixelFormat, SixteenBitsRoundToTheNearest) {
    const PixelFormat format({.bitsPerPixel = 16}, {0xf800, 0x07e0, 0x001f, 0});
    EXPECT_EQ(format.pixel(0xffffffff), 0xffffU);
    EXPECT_EQ(format.pixel(0xff000000), 0U);
    EXPECT_EQ(format.pixel(0xff00ff00), 0x07e0U);
    EXPECT_EQ(format.pixel(0xff800000), 16U << 11);
}

TEST(PixelFormat, ThirtyBitsKeepWhiteWhite) {
    const PixelFormat format({}, {0x3ff00000, 0x000ffc00, 0x000003ff, 0});
    EXPECT_FALSE(format.isNative());
    EXPECT_EQ(format.pixel(0xffffffff), 0x3fffffffU);
    EXPECT_EQ(format.pixel(0xff0000ff), 0x3ffU);
}

TEST(PixelFormat, AlphaGoesWhereTheVisualHasIt) {
    const PixelFormat format({}, {0xff, 0xff00, 0xff0000, 0xff000000});
    EXPECT_EQ(format.pixel(0x80102030), 0x80302010U);
}

TEST(PixelFormat, RowsArePaddedAsTheServerWants) {
    const PixelFormat::Channels small{0xe0, 0x1c, 0x03, 0};
    EXPECT_EQ(PixelFormat({.bitsPerPixel = 8}, small).bytesPerLine(5), 8);
    EXPECT_EQ(PixelFormat({.bitsPerPixel = 16}, small).bytesPerLine(5), 12);
    EXPECT_EQ(PixelFormat({.bitsPerPixel = 1}, small).bytesPerLine(33), 8);
    EXPECT_EQ(PixelFormat({.bitsPerPixel = 24, .scanlinePad = 8}, small).bytesPerLine(3), 9);
}

std::vector<std::uint8_t> converted(const PixelFormat& format,
                                    const std::vector<std::uint32_t>& row) {
    const int width = static_cast<int>(row.size());
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(format.bytesPerLine(width)));
    format.convert(row.data(), width, {0, 0, width, 1}, bytes.data(), width, {0, 0});
    return bytes;
}

TEST(PixelFormat, BytesComeInTheServersOrder) {
    using Bytes = std::vector<std::uint8_t>;
    const std::vector<std::uint32_t> one{0xff112233};
    EXPECT_EQ(converted(PixelFormat({}, kUsual), one), (Bytes{0x33, 0x22, 0x11, 0xff}));
    EXPECT_EQ(converted(PixelFormat({.leastFirst = false}, kUsual), one),
              (Bytes{0x00, 0x11, 0x22, 0x33}));
    EXPECT_EQ(converted(PixelFormat({.bitsPerPixel = 24, .scanlinePad = 8}, kUsual), one),
              (Bytes{0x33, 0x22, 0x11}));
    const PixelFormat::Channels five{0xf800, 0x07e0, 0x001f, 0};
    EXPECT_EQ(
        converted(PixelFormat({.bitsPerPixel = 16, .scanlinePad = 16, .leastFirst = false}, five),
                  {0xffff0000}),
        (Bytes{0xf8, 0x00}));
}

TEST(PixelFormat, SeveralPixelsShareAByte) {
    const std::vector<PixelFormat::PaletteColour> two{{0, 0, 0, 0}, {1, 255, 255, 255}};
    const std::vector<std::uint32_t> row{0xffffffff, 0xff000000, 0xff000000, 0xff000000,
                                         0xff000000, 0xff000000, 0xff000000, 0xff000000,
                                         0xff000000, 0xffffffff};
    const PixelFormat least({.bitsPerPixel = 1, .scanlinePad = 8}, two, true);
    EXPECT_EQ(converted(least, row), (std::vector<std::uint8_t>{0x01, 0x02}));
    const PixelFormat most({.bitsPerPixel = 1, .scanlinePad = 8, .leastBitFirst = false}, two,
                           true);
    EXPECT_EQ(converted(most, row), (std::vector<std::uint8_t>{0x80, 0x40}));
}

TEST(PixelFormat, ATableGivesTheNearestColour) {
    const PixelFormat format({.bitsPerPixel = 8},
                             {{7, 0, 0, 0}, {9, 0, 255, 0}, {4, 0, 120, 0}, {2, 255, 255, 255}},
                             false);
    EXPECT_EQ(format.pixel(0xff000000), 7U);
    EXPECT_EQ(format.pixel(0xff10f010), 9U);
    EXPECT_EQ(format.pixel(0xff007000), 4U);
    EXPECT_EQ(format.pixel(0xffeeeeee), 2U);
}

TEST(PixelFormat, AGreyTableGoesByBrightness) {
    const PixelFormat format({.bitsPerPixel = 8},
                             {{0, 0, 0, 0}, {1, 80, 80, 80}, {2, 180, 180, 180}}, true);
    EXPECT_EQ(format.pixel(0xff00ff00), 2U);
    EXPECT_EQ(format.pixel(0xffff0000), 1U);
}

TEST(PixelFormat, ConvertsAPartToWhereItIsWanted) {
    const PixelFormat format({.bitsPerPixel = 8, .scanlinePad = 8}, {0xe0, 0x1c, 0x03, 0});
    const std::vector<std::uint32_t> picture{0, 0, 0, 0, 0xffffffff, 0xffff0000};
    std::vector<std::uint8_t> bytes(8, 0xaa);
    format.convert(picture.data(), 3, {1, 1, 2, 1}, bytes.data(), 4, {2, 1});
    EXPECT_EQ(bytes, (std::vector<std::uint8_t>{0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xaa, 0xff, 0xe0}));
}

}  // namespace
