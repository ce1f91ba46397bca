// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LinearPixels.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

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

// Three neighbours along one side, and the share of each in a pixel of half the size. An odd
// length gives each of those pixels two and a part of its neighbours.
struct Cover {
    std::array<std::size_t, 3> at{};
    std::array<float, 3> share{};
};

std::vector<Cover> coversOf(int length) {
    const int half = std::max(1, length / 2);
    const double wide = 1.0 * length / half;
    std::vector<Cover> covers;
    for (int i = 0; i < half; ++i) {
        const int first = static_cast<int>(i * wide);
        Cover& cover = covers.emplace_back();
        for (int k = 0; k < 3; ++k) {
            const double from = std::max(i * wide, 1.0 * first + k);
            const double to = std::min((i + 1) * wide, first + k + 1.0);
            const auto slot = static_cast<std::size_t>(k);
            cover.at[slot] = static_cast<std::size_t>(std::min(first + k, length - 1));
            cover.share[slot] = static_cast<float>(std::max(0.0, to - from) / wide);
        }
    }
    return covers;
}

}  // namespace

void linearRows(const QImage& picture, int first, int count, std::uint16_t* to) {
    static const std::array<std::uint16_t, 256> kDecoding = makeDecoding();
    const int line = 4 * picture.width();
    const QImage rows =
        picture.copy(0, first, picture.width(), count).convertToFormat(QImage::Format_RGBA8888);
    if (rows.isNull()) throw std::bad_alloc();
    for (int y = 0; y < count; ++y, to += line) {
        const uchar* const rgba = rows.constScanLine(y);
        for (int i = 0; i < line; i += 4) {
            const std::uint32_t alpha = rgba[i + 3];
            for (int k = i; k < i + 3; ++k) {
                const std::uint32_t light = kDecoding[rgba[k]];
                to[k] =
                    static_cast<std::uint16_t>(alpha == 255 ? light : (light * alpha + 127) / 255);
            }
            to[i + 3] = static_cast<std::uint16_t>(alpha * 257);
        }
    }
}

std::vector<std::uint16_t> linearPixels(const QImage& picture) {
    // A few rows need little memory, where a whole converted picture might be refused.
    constexpr int kRows = 32;
    const auto line = 4 * static_cast<std::size_t>(picture.width());
    std::vector<std::uint16_t> pixels(line * static_cast<std::size_t>(picture.height()));
    for (int y = 0; y < picture.height(); y += kRows)
        linearRows(picture, y, std::min(kRows, picture.height() - y),
                   pixels.data() + line * static_cast<std::size_t>(y));
    return pixels;
}

QSize halvedSize(QSize size) {
    return {std::max(1, size.width() / 2), std::max(1, size.height() / 2)};
}

std::vector<std::uint16_t> halvedPixels(const std::vector<std::uint16_t>& pixels, QSize size) {
    const std::vector<Cover> across = coversOf(size.width());
    const auto line = 4 * static_cast<std::size_t>(size.width());
    std::vector<std::uint16_t> halved;
    halved.reserve(4 * across.size() * static_cast<std::size_t>(halvedSize(size).height()));
    for (const Cover& rows : coversOf(size.height()))
        for (const Cover& columns : across)
            for (std::size_t k = 0; k < 4; ++k) {
                float sum = 0.5F;
                for (std::size_t y = 0; y < 3; ++y)
                    for (std::size_t x = 0; x < 3; ++x)
                        sum +=
                            rows.share[y] * columns.share[x] *
                            static_cast<float>(pixels[rows.at[y] * line + 4 * columns.at[x] + k]);
                halved.push_back(static_cast<std::uint16_t>(std::min(sum, 65535.0F)));
            }
    return halved;
}

}  // namespace platform
