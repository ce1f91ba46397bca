// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LinearPixels.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/scene/Shading.h"

namespace platform {

namespace {

std::array<std::uint16_t, 256> makeDecoding() {
    std::array<std::uint16_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = static_cast<std::uint16_t>(
            std::lround(65535.0 * srgbDecode(static_cast<double>(i) / 255.0)));
    return table;
}

// Two neighbours along one side, and the second one's share.
struct Pair {
    std::size_t first = 0;
    std::size_t second = 0;
    float share = 0.0F;
};

std::vector<Pair> pairsOf(int length) {
    const int half = std::max(1, length / 2);
    std::vector<Pair> pairs;
    for (int i = 0; i < half; ++i) {
        const double middle = (i + 0.5) * length / half - 0.5;
        const int first = static_cast<int>(middle);
        pairs.push_back({static_cast<std::size_t>(first),
                         static_cast<std::size_t>(std::min(first + 1, length - 1)),
                         static_cast<float>(middle - first)});
    }
    return pairs;
}

}  // namespace

std::vector<std::uint16_t> linearPixels(const QImage& picture) {
    static const std::array<std::uint16_t, 256> kDecoding = makeDecoding();
    const QImage source = picture.convertToFormat(QImage::Format_RGBA8888);
    std::vector<std::uint16_t> pixels;
    pixels.reserve(4 * static_cast<std::size_t>(source.width()) *
                   static_cast<std::size_t>(source.height()));
    for (int y = 0; y < source.height(); ++y) {
        const uchar* const row = source.constScanLine(y);
        for (int x = 0; x < source.width(); ++x) {
            const std::uint32_t alpha = row[4 * x + 3];
            for (int i = 0; i < 3; ++i)
                pixels.push_back(
                    static_cast<std::uint16_t>((kDecoding[row[4 * x + i]] * alpha + 127) / 255));
            pixels.push_back(static_cast<std::uint16_t>(alpha * 257));
        }
    }
    return pixels;
}

QSize halvedSize(QSize size) {
    return {std::max(1, size.width() / 2), std::max(1, size.height() / 2)};
}

std::vector<std::uint16_t> halvedPixels(const std::vector<std::uint16_t>& pixels, QSize size) {
    const std::vector<Pair> across = pairsOf(size.width());
    const auto line = 4 * static_cast<std::size_t>(size.width());
    std::vector<std::uint16_t> halved;
    halved.reserve(4 * across.size() * static_cast<std::size_t>(halvedSize(size).height()));
    for (const Pair& rows : pairsOf(size.height())) {
        const std::uint16_t* const above = &pixels[rows.first * line];
        const std::uint16_t* const below = &pixels[rows.second * line];
        for (const Pair& columns : across) {
            for (std::size_t k = 0; k < 4; ++k) {
                const auto along = [&](const std::uint16_t* row) {
                    const auto a = static_cast<float>(row[4 * columns.first + k]);
                    return a +
                           columns.share * (static_cast<float>(row[4 * columns.second + k]) - a);
                };
                const float a = along(above);
                halved.push_back(
                    static_cast<std::uint16_t>(a + rows.share * (along(below) - a) + 0.5F));
            }
        }
    }
    return halved;
}

}  // namespace platform
