// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/RipPicture.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <glm/vec4.hpp>
#include <utility>

#include "platform/render/cpu/LargeArray.h"
#include "platform/render/cpu/LinearPixels.h"
#include "platform/render/cpu/scene/SpritePicture.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/RipPicture.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
void packSome(D d, const float* texels, std::uint32_t* to) {
    const hn::RebindToSigned<D> di;
    const hn::RebindToUnsigned<D> du;
    const auto bits = [&](hn::Vec<D> light, float most) {
        const auto held = hn::Min(hn::Max(light, hn::Zero(d)), hn::Set(d, 1.0F));
        const auto root = hn::Add(hn::Mul(hn::Sqrt(held), hn::Set(d, most)), hn::Set(d, 0.5F));
        return hn::BitCast(du, hn::ConvertTo(di, root));
    };
    hn::Vec<D> red, green, blue, alpha;
    hn::LoadInterleaved4(d, texels, red, green, blue, alpha);
    const auto both =
        hn::Or(hn::ShiftLeft<22>(bits(red, 1023.0F)), hn::ShiftLeft<10>(bits(green, 4095.0F)));
    hn::StoreU(hn::Or(both, bits(blue, 1023.0F)), du, to);
}

// Packs a row of texels of four numbers each.
void packTexels(const float* texels, std::uint32_t* to, int count) {
    const hn::CappedTag<float, 16> d;
    const hn::CappedTag<float, 1> single;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= count; x += lanes)
        packSome(d, texels + 4 * static_cast<std::ptrdiff_t>(x), to + x);
    for (; x < count; ++x)
        packSome(single, texels + 4 * static_cast<std::ptrdiff_t>(x), to + x);
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(packTexels);

namespace {

// One level in full precision.
struct Level {
    int width = 0;
    int height = 0;
    LargeArray<glm::vec4> texels;

    [[nodiscard]] glm::vec4* row(int y) {
        return texels.data() + static_cast<std::ptrdiff_t>(y) * width;
    }
    [[nodiscard]] const glm::vec4* row(int y) const {
        return texels.data() + static_cast<std::ptrdiff_t>(y) * width;
    }
};

// All of which is to be written.
template <typename T>
LargeArray<T> arrayOf(std::size_t count) {
    LargeArray<T> array(count);
    array.expectAll();
    return array;
}

// The average of the texels of a line that one of its `half` halved texels covers.
template <typename At>
glm::vec4 halved(int i, int half, int whole, At at) {
    if (whole == 2 * half) return at(2 * i) * 0.5F + at(2 * i + 1) * 0.5F;
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

// Halves in place: a halved texel lies no further on than the first texel that it covers.
void halveAcross(Level& level) {
    const int half = std::max(1, level.width / 2);
    for (int y = 0; y < level.height; ++y) {
        const glm::vec4* const from = level.row(y);
        glm::vec4* const to = level.texels.data() + static_cast<std::ptrdiff_t>(y) * half;
        for (int x = 0; x < half; ++x)
            to[x] = halved(x, half, level.width, [from](int k) { return from[k]; });
    }
    level.width = half;
}

// `from` may be the level itself.
void halveDown(const Level& from, Level& level) {
    const int whole = from.height;
    const int half = std::max(1, whole / 2);
    level.width = from.width;
    const std::size_t count = static_cast<std::size_t>(from.width) * static_cast<std::size_t>(half);
    if (level.texels.size() < count) level.texels = arrayOf<glm::vec4>(count);
    for (int y = 0; y < half; ++y) {
        glm::vec4* const to = level.row(y);
        for (int x = 0; x < from.width; ++x)
            to[x] = halved(y, half, whole, [&](int k) { return from.row(k)[x]; });
    }
    level.height = half;
}

// The target is chosen anew for each row: until its first use, a chosen function looks for the
// processor's kind in each call.
void packColours(const float* texels, std::uint32_t* to, int count) {
    HWY_DYNAMIC_DISPATCH(packTexels)(texels, to, count);
}

void packAlphas(const float* texels, std::uint32_t* to, int count) {
    for (int x = 0; x < count; ++x)
        to[x] = static_cast<std::uint32_t>(
            texels[4 * static_cast<std::ptrdiff_t>(x) + 3] * 65535.0F + 0.5F);
}

// Writes the places of a level: each texel beside the one below.
class PairRows {
  public:
    explicit PairRows(int widest) {
        for (auto* const row : {&first_, &upper_, &lower_})
            row->resize(static_cast<std::size_t>(widest) + 1);
    }

    void write(const Level& level, void (*pack)(const float*, std::uint32_t*, int),
               std::uint32_t* to) {
        const auto read = [&](int y, std::vector<std::uint32_t>& row) {
            pack(&level.row(y)->x, row.data(), level.width);
            row[static_cast<std::size_t>(level.width)] = row[0];
        };
        const std::ptrdiff_t count = level.width + 1;
        read(0, first_);
        std::copy_n(first_.begin(), count, upper_.begin());
        for (int y = 0; y < level.height; ++y, to += 2 * count) {
            const bool isLast = y + 1 == level.height;
            if (!isLast) read(y + 1, lower_);
            interleave(upper_.data(), isLast ? first_.data() : lower_.data(), to, count);
            std::swap(upper_, lower_);
        }
    }

  private:
    static void interleave(const std::uint32_t* upper, const std::uint32_t* lower,
                           std::uint32_t* to, std::ptrdiff_t count) {
        for (std::ptrdiff_t i = 0; i < count; ++i) {
            to[2 * i] = upper[i];
            to[2 * i + 1] = lower[i];
        }
    }

    std::vector<std::uint32_t> first_, upper_, lower_;
};

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
    Level whole{width, height, {}};
    whole.texels =
        arrayOf<glm::vec4>(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    constexpr int kRows = 32;
    const auto line = 4 * static_cast<std::size_t>(width);
    std::vector<std::uint16_t> pixels(kRows * line);
    for (int y = 0; y < height; y += kRows) {
        const int count = std::min(kRows, height - y);
        linearRows(picture, y, count, pixels.data());
        take(pixels.data(), count * width, whole.row(y));
    }
    if (hasAlpha) stencil = stencilColour(picture);
    const auto place = [](int side, int levels, std::array<float, kMostLevels>& sides) {
        int sum = 0;
        for (int i = 0; i < levels; ++i, side = std::max(1, side / 2)) {
            sides[static_cast<std::size_t>(i)] = static_cast<float>(side);
            sum += side;
        }
        return sum;
    };
    const int across = place(width, levelsAcross, widths) + levelsAcross;
    const int down = place(height, levelsDown, heights);
    const std::size_t places = static_cast<std::size_t>(across) * static_cast<std::size_t>(down);
    texels = arrayOf<std::uint32_t>(2 * places);
    if (hasAlpha) alphas = arrayOf<std::uint32_t>(2 * places);
    PairRows rows(width);
    std::size_t next = 0;
    const auto append = [&](const Level& some) {
        first.push_back(static_cast<std::int32_t>(next));
        rows.write(some, packColours, texels.data() + 2 * next);
        if (hasAlpha) rows.write(some, packAlphas, alphas.data() + 2 * next);
        next += static_cast<std::size_t>(some.width + 1) * static_cast<std::size_t>(some.height);
    };
    Level level;
    for (int i = 0; i < levelsAcross; ++i) {
        if (i > 0) halveAcross(whole);
        append(whole);
        for (int k = 1; k < levelsDown; ++k) {
            halveDown(k == 1 ? whole : level, level);
            append(level);
        }
    }
}

void RipPicture::take(const std::uint16_t* pixel, int count, glm::vec4* to) {
    for (int i = 0; i < count; ++i, pixel += 4) {
        to[i] = glm::vec4(pixel[0], pixel[1], pixel[2], pixel[3]) / 65535.0F;
        if (pixel[3] != 65535) hasAlpha = true;
        for (unsigned k = 0; k < 3; ++k)
            if (pixel[k] > 0) colours |= 1U << k;
    }
}

}  // namespace platform
#endif
