// SPDX-License-Identifier: MIT
#include "platform/render/LinearPixels.h"

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

// The pixels along one side that a pixel of half as many stands for, and the
// share of each.
struct Span {
    int first = 0;
    int count = 1;
    std::array<float, 3> share{1.0F, 0.0F, 0.0F};
};

std::vector<Span> spansOf(int length) {
    if (length == 1) return {Span{}};
    const int half = length / 2;
    std::vector<Span> spans;
    for (int i = 0; i < half; ++i) {
        const auto whole = static_cast<float>(length);
        if (length % 2 == 0)
            spans.push_back({2 * i, 2, {0.5F, 0.5F, 0.0F}});
        else
            spans.push_back(
                {2 * i,
                 3,
                 {static_cast<float>(half - i) / whole, static_cast<float>(half) / whole,
                  static_cast<float>(i + 1) / whole}});
    }
    return spans;
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
    const std::vector<Span> across = spansOf(size.width());
    const std::vector<Span> down = spansOf(size.height());
    std::vector<std::uint16_t> halved;
    halved.reserve(4 * across.size() * down.size());
    for (const Span& rows : down) {
        for (const Span& columns : across) {
            std::array<float, 4> sum{0.5F, 0.5F, 0.5F, 0.5F};
            for (int j = 0; j < rows.count; ++j) {
                const std::uint16_t* const from =
                    &pixels[4 * (static_cast<std::size_t>(rows.first + j) *
                                     static_cast<std::size_t>(size.width()) +
                                 static_cast<std::size_t>(columns.first))];
                for (int i = 0; i < columns.count; ++i) {
                    const float share = rows.share[static_cast<std::size_t>(j)] *
                                        columns.share[static_cast<std::size_t>(i)];
                    for (std::size_t k = 0; k < 4; ++k)
                        sum[k] += share * static_cast<float>(from[4 * i + static_cast<int>(k)]);
                }
            }
            for (const float value : sum)
                halved.push_back(static_cast<std::uint16_t>(std::min(value, 65535.0F)));
        }
    }
    return halved;
}

}  // namespace platform
