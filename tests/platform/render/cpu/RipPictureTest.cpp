// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/RipPicture.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/render/cpu/LinearPixels.h"
#include "platform/render/cpu/scene/TileWorkers.h"
#include "platform/time/RandomSource.h"

namespace platform::test {

namespace {

QImage noise(QSize size, QImage::Format format) {
    RandomSource random(static_cast<std::uint64_t>(size.width() * 1000 + size.height()));
    QImage image(size, QImage::Format_ARGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const auto part = [&] { return static_cast<int>(random.below(256)); };
            image.setPixel(x, y, qRgba(part(), part(), part(), part()));
        }
    return image.convertToFormat(format);
}

// One channel of a picture, averaged side by side in double precision.
struct Plane {
    int width;
    int height;
    std::vector<double> values;

    [[nodiscard]] double at(int x, int y) const {
        return values[static_cast<std::size_t>(y * width + x)];
    }
    // The mean of a box whose sides may lie within texels.
    [[nodiscard]] double mean(double left, double top, double right, double bottom) const {
        double sum = 0.0;
        for (int y = static_cast<int>(top); y < std::min(height, static_cast<int>(bottom) + 1); ++y)
            for (int x = static_cast<int>(left); x < std::min(width, static_cast<int>(right) + 1);
                 ++x)
                sum += at(x, y) *
                       std::max(0.0, std::min(right, x + 1.0) - std::max(left, x * 1.0)) *
                       std::max(0.0, std::min(bottom, y + 1.0) - std::max(top, y * 1.0));
        return sum / ((right - left) * (bottom - top));
    }
    [[nodiscard]] Plane sized(int newWidth, int newHeight) const {
        Plane result{newWidth, newHeight, {}};
        const double across = 1.0 * width / newWidth, down = 1.0 * height / newHeight;
        for (int y = 0; y < newHeight; ++y)
            for (int x = 0; x < newWidth; ++x)
                result.values.push_back(
                    mean(x * across, y * down, (x + 1) * across, (y + 1) * down));
        return result;
    }
};

Plane planeOf(const QImage& picture, std::size_t channel) {
    const std::vector<std::uint16_t> numbers = linearPixels(picture);
    Plane plane{picture.width(), picture.height(), {}};
    for (std::size_t i = channel; i < numbers.size(); i += 4)
        plane.values.push_back(numbers[i] / 65535.0);
    return plane;
}

// A channel within the numbers of a picture's places.
struct Channel {
    std::size_t number;
    unsigned shift;
    std::uint32_t most;
    bool isRoot = true;
};

// Expects one level: each place's texel and the one below, and the first place of each row once
// more behind its last.
void expectLevel(const std::uint32_t* numbers, const Channel& channel, const Plane& plane) {
    for (int y = 0; y < plane.height; ++y)
        for (int x = 0; x <= plane.width; ++x)
            for (const int row : {y, (y + 1) % plane.height}) {
                const double value = plane.at(x % plane.width, row);
                const double wanted = channel.most * (channel.isRoot ? std::sqrt(value) : value);
                const std::uint32_t got = *numbers++ >> channel.shift & channel.most;
                ASSERT_NEAR(got, wanted, 0.6) << channel.number << ' ' << x << ' ' << y;
            }
}

void expectLevels(const RipPicture& rip, const QImage& picture, const Channel& channel) {
    const auto& all = channel.number == 3 ? rip.alphas : rip.texels;
    Plane wide = planeOf(picture, channel.number);
    for (int across = 0; across < rip.levelsAcross; ++across) {
        Plane level = wide;
        for (int down = 0; down < rip.levelsDown; ++down) {
            EXPECT_EQ(static_cast<int>(rip.widths[static_cast<std::size_t>(across)]), level.width);
            EXPECT_EQ(static_cast<int>(rip.heights[static_cast<std::size_t>(down)]), level.height);
            const int first = rip.first[static_cast<std::size_t>(rip.levelAt(across, down))];
            expectLevel(all.data() + 2 * static_cast<std::ptrdiff_t>(first), channel, level);
            level = level.sized(level.width, std::max(1, level.height / 2));
        }
        wide = wide.sized(std::max(1, wide.width / 2), wide.height);
    }
}

constexpr Channel kColours[] = {
    {.number = 0, .shift = 22, .most = 1023},
    {.number = 1, .shift = 10, .most = 4095},
    {.number = 2, .shift = 0, .most = 1023},
};
constexpr Channel kAlpha{.number = 3, .shift = 0, .most = 65535, .isRoot = false};

}  // namespace

// Sizes with odd halves, one row, one column, and one that threads share.
TEST(RipPicture, EveryLevelIsTheAverageOfTheOneBefore) {
    TileWorkers workers(2);
    for (const QSize size :
         {QSize(8, 4), QSize(13, 7), QSize(1, 9), QSize(6, 1), QSize(320, 250), QSize(256, 256)}) {
        const QImage picture = noise(size, QImage::Format_RGB32);
        const RipPicture rip(picture, workers);
        ASSERT_EQ(rip.first.size(), static_cast<std::size_t>(rip.levelsAcross) *
                                        static_cast<std::size_t>(rip.levelsDown));
        for (const Channel& channel : kColours)
            expectLevels(rip, picture, channel);
        EXPECT_EQ(rip.levelsAcross > 1, size.width() > 1);
        EXPECT_EQ(rip.levelsDown > 1, size.height() > 1);
        EXPECT_FALSE(rip.hasAlpha);
        EXPECT_EQ(rip.alphas.size(), 0U);
    }
}

TEST(RipPicture, ThreadsGiveTheBitsThatOneGives) {
    TileWorkers one(1), two(2);
    const QImage picture = noise({300, 260}, QImage::Format_ARGB32);
    const RipPicture a(picture, one), b(picture, two);
    EXPECT_TRUE(a.hasAlpha);
    EXPECT_EQ(a.colours, 7U);
    expectLevels(a, picture, kAlpha);
    expectLevels(a, picture, kColours[1]);
    ASSERT_GT(a.texels.size(), 4U * 300U * 260U);
    ASSERT_EQ(a.texels.size(), b.texels.size());
    ASSERT_EQ(a.alphas.size(), a.texels.size());
    EXPECT_TRUE(std::equal(a.texels.data(), a.texels.data() + a.texels.size(), b.texels.data()));
    EXPECT_TRUE(std::equal(a.alphas.data(), a.alphas.data() + a.alphas.size(), b.alphas.data()));
}

}  // namespace platform::test
