// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/RipPicture.h"

#include <algorithm>
#include <cmath>
#include <glm/common.hpp>
#include <glm/vec4.hpp>

#include "platform/render/cpu/LinearPixels.h"

namespace platform {

namespace {

// One level in full precision.
struct Level {
    int width = 0;
    int height = 0;
    std::vector<glm::vec4> texels;

    [[nodiscard]] const glm::vec4& at(int x, int y) const {
        return texels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    }
};

// The average of the texels of a line that one of its `half` halved texels covers.
template <typename At>
glm::vec4 halved(int i, int half, int whole, At at) {
    const double low = static_cast<double>(i) * whole / half;
    const double high = static_cast<double>(i + 1) * whole / half;
    glm::vec4 sum(0.0F);
    for (int k = static_cast<int>(low); k < std::min(whole, static_cast<int>(std::ceil(high)));
         ++k) {
        const double share = std::min(high, k + 1.0) - std::max(low, static_cast<double>(k));
        sum += at(k) * static_cast<float>(share / (high - low));
    }
    return sum;
}

Level halvedAcross(const Level& from) {
    Level to{std::max(1, from.width / 2), from.height, {}};
    for (int y = 0; y < to.height; ++y)
        for (int x = 0; x < to.width; ++x)
            to.texels.push_back(
                halved(x, to.width, from.width, [&](int k) { return from.at(k, y); }));
    return to;
}

Level halvedDown(const Level& from) {
    Level to{from.width, std::max(1, from.height / 2), {}};
    for (int y = 0; y < to.height; ++y)
        for (int x = 0; x < to.width; ++x)
            to.texels.push_back(
                halved(y, to.height, from.height, [&](int k) { return from.at(x, k); }));
    return to;
}

std::uint32_t packed(const glm::vec4& texel) {
    const auto bits = [](float light, float most) {
        return static_cast<std::uint32_t>(std::sqrt(std::clamp(light, 0.0F, 1.0F)) * most + 0.5F);
    };
    return bits(texel.r, 1023.0F) << 22U | bits(texel.g, 4095.0F) << 10U | bits(texel.b, 1023.0F);
}

int levelsOf(int side) {
    int levels = 1;
    while (side > 1 && levels < RipPicture::kMostLevels) {
        side /= 2;
        ++levels;
    }
    return levels;
}

}  // namespace

RipPicture::RipPicture(const QImage& picture)
    : width(picture.width()),
      height(picture.height()),
      levelsAcross(levelsOf(width)),
      levelsDown(levelsOf(height)) {
    const std::vector<std::uint16_t> pixels = linearPixels(picture);
    Level whole{width, height, {}};
    for (std::size_t i = 0; i < pixels.size(); i += 4) {
        whole.texels.push_back(glm::vec4(pixels[i], pixels[i + 1], pixels[i + 2], pixels[i + 3]) /
                               65535.0F);
        if (pixels[i + 3] != 65535) hasAlpha = true;
        for (std::size_t k = 0; k < 3; ++k)
            if (pixels[i + k] > 0) colours |= 1U << k;
    }
    const auto append = [&](const Level& level) {
        for (int y = 0; y < level.height; ++y)
            for (int x = 0; x <= level.width; ++x) {
                const glm::vec4& texel = level.at(x % level.width, y);
                texels.push_back(packed(texel));
                if (hasAlpha)
                    alphas.push_back(static_cast<std::uint32_t>(texel.a * 65535.0F + 0.5F));
            }
    };
    for (int across = 0; across < levelsAcross; ++across) {
        if (across > 0) whole = halvedAcross(whole);
        widths[static_cast<std::size_t>(across)] = static_cast<float>(whole.width);
        Level level = whole;
        for (int down = 0; down < levelsDown; ++down) {
            if (down > 0) level = halvedDown(level);
            heights[static_cast<std::size_t>(down)] = static_cast<float>(level.height);
            first.push_back(static_cast<std::int32_t>(texels.size()));
            append(level);
        }
    }
}

}  // namespace platform
