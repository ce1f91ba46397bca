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
#include "platform/render/cpu/scene/TileWorkers.h"

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

// A picture's pixels, which give their texels in full precision a row at a time.
struct Pixels {
    int width = 0;
    int height = 0;
    LargeArray<std::uint16_t> numbers;

    // In the room, until its next use.
    const glm::vec4* row(int y, glm::vec4* room) const {
        const std::uint16_t* from = numbers.data() + 4 * static_cast<std::ptrdiff_t>(y) * width;
        for (int x = 0; x < width; ++x, from += 4)
            room[x] = glm::vec4(from[0], from[1], from[2], from[3]) / 65535.0F;
        return room;
    }
};

// One level in full precision.
struct Level {
    int width = 0;
    int height = 0;
    LargeArray<glm::vec4> texels;

    [[nodiscard]] glm::vec4* row(int y) {
        return texels.data() + static_cast<std::ptrdiff_t>(y) * width;
    }
    const glm::vec4* row(int y, glm::vec4*) const {
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

// Calls use(k, share) for the texels of a line that one of its `half` halved texels covers.
template <typename Use>
void eachCovered(int i, int half, int whole, Use use) {
    if (whole == 2 * half) {
        use(2 * i, 0.5F);
        use(2 * i + 1, 0.5F);
        return;
    }
    const double low = static_cast<double>(i) * whole / half;
    const double high = static_cast<double>(i + 1) * whole / half;
    for (int k = static_cast<int>(low); k < std::min(whole, static_cast<int>(std::ceil(high)));
         ++k) {
        const double share = std::min(high, k + 1.0) - std::max(low, static_cast<double>(k));
        use(k, static_cast<float>(share / (high - low)));
    }
}

// `from` may be the level itself: a halved texel lies no further on than the first texel that it
// covers.
template <typename From>
void halveAcross(const From& from, Level& level, glm::vec4* room) {
    const int whole = from.width;
    const int half = std::max(1, whole / 2);
    const int height = from.height;
    for (int y = 0; y < height; ++y) {
        const glm::vec4* const texels = from.row(y, room);
        glm::vec4* const to = level.texels.data() + static_cast<std::ptrdiff_t>(y) * half;
        for (int x = 0; x < half; ++x) {
            glm::vec4 sum(0.0F);
            eachCovered(x, half, whole, [&](int k, float share) { sum += texels[k] * share; });
            to[x] = sum;
        }
    }
    level.width = half;
    level.height = height;
}

// `from` may be the level itself.
template <typename From>
void halveDown(const From& from, Level& level, glm::vec4* room) {
    const int whole = from.height;
    const int half = std::max(1, whole / 2);
    level.width = from.width;
    for (int y = 0; y < half; ++y) {
        glm::vec4* const to = level.row(y);
        bool isFirst = true;
        eachCovered(y, half, whole, [&](int k, float share) {
            const glm::vec4* const texels = from.row(k, room);
            for (int x = 0; x < level.width; ++x)
                to[x] = isFirst ? texels[x] * share : to[x] + texels[x] * share;
            isFirst = false;
        });
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

    template <typename From>
    void write(const From& level, glm::vec4* room, void (*pack)(const float*, std::uint32_t*, int),
               std::uint32_t* to) {
        const auto read = [&](int y, std::vector<std::uint32_t>& row) {
            pack(&level.row(y, room)->x, row.data(), level.width);
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

// Whether the numbers of a picture's pixels show that some are not opaque, and which colours
// some have.
void note(const std::uint16_t* pixel, int count, RipPicture& picture) {
    for (int i = 0; i < count; ++i, pixel += 4) {
        if (pixel[3] != 65535) picture.hasAlpha = true;
        for (unsigned k = 0; k < 3; ++k)
            if (pixel[k] > 0) picture.colours |= 1U << k;
    }
}

Pixels pixelsOf(const QImage& picture, RipPicture& rip) {
    const std::size_t line = 4 * static_cast<std::size_t>(rip.width);
    Pixels pixels{rip.width, rip.height,
                  arrayOf<std::uint16_t>(line * static_cast<std::size_t>(rip.height))};
    constexpr int kRows = 32;
    for (int y = 0; y < rip.height; y += kRows) {
        const int count = std::min(kRows, rip.height - y);
        std::uint16_t* const to = pixels.numbers.data() + static_cast<std::size_t>(y) * line;
        linearRows(picture, y, count, to);
        note(to, count * rip.width, rip);
    }
    return pixels;
}

// Room to make levels of at most this size in. All memory is taken here, since work that threads
// share may not fail.
struct Desk {
    Desk(int width, int height, int wholeWidth)
        : level{0, 0, arrayOf<glm::vec4>(sizeOf(width, std::max(1, height / 2)))},
          rows(width),
          room(static_cast<std::size_t>(wholeWidth)) {}
    static std::size_t sizeOf(int width, int height) {
        return static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    }
    Level level;
    PairRows rows;
    std::vector<glm::vec4> room;
};

// Writes the levels of one width.
template <typename From>
void writeLevels(const From& whole, int across, Desk& desk, RipPicture& picture) {
    glm::vec4* const room = desk.room.data();
    const auto write = [&](const auto& some, int down) {
        const std::ptrdiff_t to =
            2 *
            std::ptrdiff_t{picture.first[static_cast<std::size_t>(picture.levelAt(across, down))]};
        desk.rows.write(some, room, packColours, picture.texels.data() + to);
        if (picture.hasAlpha) desk.rows.write(some, room, packAlphas, picture.alphas.data() + to);
    };
    write(whole, 0);
    for (int k = 1; k < picture.levelsDown; ++k) {
        if (k == 1)
            halveDown(whole, desk.level, room);
        else
            halveDown(desk.level, desk.level, room);
        write(desk.level, k);
    }
}

// The sides of a picture's levels, the largest first.
std::array<float, RipPicture::kMostLevels> sidesOf(int side, int levels) {
    std::array<float, RipPicture::kMostLevels> sides{};
    for (int i = 0; i < levels; ++i, side = std::max(1, side / 2))
        sides[static_cast<std::size_t>(i)] = static_cast<float>(side);
    return sides;
}

// Finds the first place of each level. Returns the number of all places.
std::size_t placeLevels(RipPicture& picture) {
    std::size_t places = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(picture.levelsAcross); ++i)
        for (std::size_t k = 0; k < static_cast<std::size_t>(picture.levelsDown); ++k) {
            picture.first.push_back(static_cast<std::int32_t>(places));
            places += (static_cast<std::size_t>(picture.widths[i]) + 1) *
                      static_cast<std::size_t>(picture.heights[k]);
        }
    return places;
}

// A picture of fewer texels is not worth waking a thread.
constexpr int kFewestShared = 1 << 16;

}  // namespace

RipPicture::RipPicture(const QImage& picture, TileWorkers& workers)
    : width(picture.width()),
      height(picture.height()),
      levelsAcross(levelsOf(width)),
      levelsDown(levelsOf(height)),
      widths(sidesOf(width, levelsAcross)),
      heights(sidesOf(height, levelsDown)) {
    const Pixels whole = pixelsOf(picture, *this);
    if (hasAlpha) stencil = stencilColour(picture);
    const std::size_t places = placeLevels(*this);
    texels = arrayOf<std::uint32_t>(2 * places);
    if (hasAlpha) alphas = arrayOf<std::uint32_t>(2 * places);
    const int half = std::max(1, width / 2);
    Desk wide(width, height, width);
    Desk narrow(half, height, width);
    Level level{0, 0, arrayOf<glm::vec4>(Desk::sizeOf(half, height))};
    const auto writeNarrower = [&] {
        for (int i = 1; i < levelsAcross; ++i) {
            if (i == 1)
                halveAcross(whole, level, narrow.room.data());
            else
                halveAcross(level, level, narrow.room.data());
            writeLevels(level, i, narrow, *this);
        }
    };
    // The levels of full width have about as many texels as all others.
    const bool isLarge = width * height >= kFewestShared;
    workers.each(
        2,
        [&](int piece, int) {
            if (piece == 0)
                writeLevels(whole, 0, wide, *this);
            else
                writeNarrower();
        },
        isLarge ? 2 : 3);
}

}  // namespace platform
#endif
