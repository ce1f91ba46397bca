// SPDX-License-Identifier: MIT
#include "platform/render/cpu/PixelRows.h"

#include <gtest/gtest.h>

#include <QColor>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "platform/time/RandomSource.h"

using namespace platform;

namespace {

using Pixels = std::vector<std::uint32_t>;

Pixels premultiplied(RandomSource& random, std::size_t count) {
    Pixels pixels(count);
    for (std::uint32_t& pixel : pixels)
        pixel = qPremultiply(static_cast<QRgb>(random.bits()));
    return pixels;
}

double part(std::uint32_t pixel, int shift) {
    return (pixel >> shift) & 0xFF;
}

TEST(PixelRows, TheVectorLoopIsThePortableOneToTheLastBit) {
    RandomSource random(1);
    for (int i = 0; i < 2000; ++i) {
        const std::size_t count = random.below(40);
        const Pixels from = premultiplied(random, count);
        Pixels a = premultiplied(random, count);
        Pixels b = a;
        const auto share = static_cast<rows::Share>(random.below(65536));
        rows::blend(a.data(), from.data(), static_cast<int>(count), share);
        rows::blendPortable(b.data(), from.data(), static_cast<int>(count), share);
        EXPECT_EQ(a, b);
    }
}

TEST(PixelRows, BlendingRoundsToTheNearest) {
    RandomSource random(2);
    for (int i = 0; i < 20000; ++i) {
        const Pixels from = premultiplied(random, 1);
        const Pixels below = premultiplied(random, 1);
        Pixels to = below;
        const auto share = static_cast<rows::Share>(random.below(65536));
        rows::blend(to.data(), from.data(), 1, share);
        const double alpha = share / 65535.0;
        for (int shift = 0; shift < 32; shift += 8) {
            const double exact = part(from[0], shift) * alpha +
                                 part(below[0], shift) * (1.0 - part(from[0], 24) / 255.0 * alpha);
            EXPECT_LE(std::abs(part(to[0], shift) - exact), 0.52);
        }
    }
}

TEST(PixelRows, NothingLeavesEveryPixelAndWholeReplacesIt) {
    for (std::uint32_t v = 0; v < 256; ++v) {
        const std::uint32_t grey = v << 16 | v << 8 | v;
        const Pixels clear(7, 0), opaque(7, 0xFF000000U | grey);
        Pixels to(7, 0xFF000000U | grey);
        rows::blend(to.data(), clear.data(), 7, 65535);
        EXPECT_EQ(to, opaque);
        to.assign(7, 0x80402010);
        rows::blend(to.data(), opaque.data(), 7, 65535);
        EXPECT_EQ(to, opaque);
        to.assign(7, 0x80402010);
        rows::blend(to.data(), opaque.data(), 7, 0);
        EXPECT_EQ(to, Pixels(7, 0x80402010));
    }
}

TEST(PixelRows, AColourIsBlendedLikeAPictureOfIt) {
    RandomSource random(3);
    for (int i = 0; i < 2000; ++i) {
        const std::uint32_t pixel = premultiplied(random, 1)[0];
        const Pixels from(5, pixel);
        Pixels a = premultiplied(random, 5);
        Pixels b = a, c = a;
        const Rgba colour{static_cast<float>(part(pixel, 16) / 255.0),
                          static_cast<float>(part(pixel, 8) / 255.0),
                          static_cast<float>(part(pixel, 0) / 255.0),
                          static_cast<float>(part(pixel, 24) / 255.0)};
        rows::blend(a.data(), from.data(), 5, 65535);
        rows::blend(b.data(), 5, colour);
        const std::vector<Rgba> colours(5, colour);
        const std::vector<float> alphas(5, 1.0F);
        rows::blend(c.data(), colours.data(), alphas.data(), 5);
        for (std::size_t p = 0; p < 5; ++p) {
            for (int shift = 0; shift < 32; shift += 8) {
                EXPECT_LE(std::abs(part(a[p], shift) - part(b[p], shift)), 1.0);
                EXPECT_LE(std::abs(part(a[p], shift) - part(c[p], shift)), 1.0);
            }
        }
    }
}

TEST(PixelRows, AColourIsTheNearestPixel) {
    EXPECT_EQ(rows::pixel({0.0F, 0.0F, 0.0F, 1.0F}), 0xFF000000U);
    EXPECT_EQ(rows::pixel({1.0F, 0.5F, 0.25F, 1.0F}), 0xFFFF8040U);
    EXPECT_EQ(rows::pixel({}), 0U);
}

}  // namespace
