// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LightRows.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/scene/Shading.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform::rows {

namespace {

constexpr int kWeightBits = 14;
constexpr int kPictureBits = 20;  // kStep and the weight's
constexpr std::uint32_t kOpaque = 0xFF000000U;

// By light.
using Encoding = std::array<std::uint16_t, kWhite + 1>;

const Encoding& encoding() {
    static const Encoding kTable = [] {
        Encoding table{};
        for (std::size_t i = 0; i < table.size(); ++i)
            table[i] = static_cast<std::uint16_t>(
                std::lround(255.0 * kStep * srgbEncode(static_cast<double>(i) / kWhite)));
        return table;
    }();
    return kTable;
}

// Pixels first ..< last; widens the extent by those that are not black.
void encodeRun(const std::uint16_t* light, const std::uint16_t* bloom, int first, int last,
               std::int16_t* to, Extent& extent) {
    const Encoding& table = encoding();
    for (int x = first; x < last; ++x) {
        std::uint32_t all = 0;
        for (int i = 0; i < 3; ++i) {
            const std::uint32_t sum =
                static_cast<std::uint32_t>(light[4 * x + i]) + (bloom ? bloom[4 * x + i] : 0U);
            const auto value = table[std::min<std::uint32_t>(sum, kWhite)];
            to[4 * x + 2 - i] = static_cast<std::int16_t>(value);
            all |= sum;
        }
        to[4 * x + 3] = 0;
        if (all == 0) continue;
        extent.from = std::min(extent.from, x);
        extent.to = x + 1;
    }
}

std::int16_t saturated(std::int32_t value) {
    return static_cast<std::int16_t>(std::clamp(value, -32768, 32767));
}

#if defined(__SSE2__)

__m128i loadPixel(const std::int16_t* from) {
    return _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
}
__m128i loadTwo(const std::int16_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}
__m128i pairOf(std::int16_t a, std::int16_t b) {
    return _mm_set1_epi32(static_cast<int>(static_cast<std::uint16_t>(a)) | (b * 65536));
}

// Two pixels' light clamped to white, the fourth components 0.
__m128i shownLight(const std::uint16_t* light, const std::uint16_t* bloom, int x) {
    const auto load = [x](const std::uint16_t* from) {
        return _mm_loadu_si128(
            reinterpret_cast<const __m128i*>(from + 4 * static_cast<std::ptrdiff_t>(x)));
    };
    __m128i sum = load(light);
    if (bloom) sum = _mm_adds_epu16(sum, load(bloom));
    const __m128i white = _mm_set1_epi16(kWhite);
    sum = _mm_sub_epi16(sum, _mm_subs_epu16(sum, white));
    return _mm_and_si128(sum, _mm_set_epi16(0, -1, -1, -1, 0, -1, -1, -1));
}

template <int kFirst>
std::uint64_t encodedPixel(__m128i light, const Encoding& table) {
    const auto at = [&](int component) -> std::uint64_t {
        return table[static_cast<std::size_t>(component)];
    };
    return at(_mm_extract_epi16(light, kFirst)) << 32U |
           at(_mm_extract_epi16(light, kFirst + 1)) << 16U |
           at(_mm_extract_epi16(light, kFirst + 2));
}

__m128i stretched(const std::int16_t* from, const Taps& taps) {
    const std::int16_t* const at = from + 4 * static_cast<std::ptrdiff_t>(taps.first);
    const __m128i ab = _mm_unpacklo_epi16(loadPixel(at), loadPixel(at + 4));
    const __m128i cd = _mm_unpacklo_epi16(loadPixel(at + 8), loadPixel(at + 12));
    const __m128i weights = loadPixel(taps.weight.data());
    const __m128i sum = _mm_add_epi32(_mm_madd_epi16(ab, _mm_shuffle_epi32(weights, 0x00)),
                                      _mm_madd_epi16(cd, _mm_shuffle_epi32(weights, 0x55)));
    return _mm_srai_epi32(sum, kWeightBits);
}

struct Mixer {
    explicit Mixer(const FourRows& four)
        : rows(four),
          ab(pairOf(four.weight[0], four.weight[1])),
          cd(pairOf(four.weight[2], four.weight[3])) {}

    const FourRows& rows;
    const __m128i ab, cd;

    // Two pixels, from x.
    [[nodiscard]] __m128i two(int x, const std::int32_t* noise) const {
        const __m128i a = loadTwo(rows.row[0] + 4 * static_cast<std::ptrdiff_t>(x));
        const __m128i b = loadTwo(rows.row[1] + 4 * static_cast<std::ptrdiff_t>(x));
        const __m128i c = loadTwo(rows.row[2] + 4 * static_cast<std::ptrdiff_t>(x));
        const __m128i d = loadTwo(rows.row[3] + 4 * static_cast<std::ptrdiff_t>(x));
        const auto weighed = [&](__m128i first, __m128i second, std::int32_t grain) {
            const __m128i sum =
                _mm_add_epi32(_mm_madd_epi16(first, ab), _mm_madd_epi16(second, cd));
            return _mm_srai_epi32(_mm_add_epi32(sum, _mm_set1_epi32(grain)), kPictureBits);
        };
        return _mm_packs_epi32(
            weighed(_mm_unpacklo_epi16(a, b), _mm_unpacklo_epi16(c, d), noise[x]),
            weighed(_mm_unpackhi_epi16(a, b), _mm_unpackhi_epi16(c, d), noise[x + 1]));
    }
};

#endif

}  // namespace

Extent encodePortable(const std::uint16_t* light, const std::uint16_t* bloom, int count,
                      std::int16_t* to) {
    Extent extent{count, 0};
    encodeRun(light, bloom, 0, count, to, extent);
    return extent;
}

std::array<std::int16_t, 4> cubicWeights(double share) {
    const double s2 = share * share;
    const double s3 = s2 * share;
    const auto rounded = [](double weight) {
        return static_cast<std::int16_t>(std::lround(weight * kWhole));
    };
    std::array<std::int16_t, 4> weights{rounded(0.5 * (2.0 * s2 - s3 - share)), 0,
                                        rounded(0.5 * (4.0 * s2 - 3.0 * s3 + share)),
                                        rounded(0.5 * (s3 - s2))};
    // So that they are whole together, and an even colour stays as it is.
    weights[1] = static_cast<std::int16_t>(kWhole - weights[0] - weights[2] - weights[3]);
    return weights;
}

void stretchPortable(const std::int16_t* from, const Taps* taps, int first, int last,
                     std::int16_t* to) {
    for (int x = first; x < last; ++x) {
        const std::int16_t* const at = from + 4 * static_cast<std::ptrdiff_t>(taps[x].first);
        for (int i = 0; i < 4; ++i) {
            std::int32_t sum = 0;
            for (std::size_t k = 0; k < 4; ++k)
                sum += at[4 * k + static_cast<std::size_t>(i)] * taps[x].weight[k];
            to[4 * x + i] = saturated(sum >> kWeightBits);
        }
    }
}

void mixPortable(const FourRows& rows, const std::int32_t* noise, int first, int last,
                 std::uint32_t* to) {
    for (int x = first; x < last; ++x) {
        std::uint32_t pixel = kOpaque;
        for (int i = 0; i < 3; ++i) {
            std::int32_t sum = noise[x];
            for (std::size_t k = 0; k < 4; ++k)
                sum += rows.row[k][4 * x + i] * rows.weight[k];
            pixel |= static_cast<std::uint32_t>(std::clamp(sum >> kPictureBits, 0, 255)) << (8 * i);
        }
        to[x] = pixel;
    }
}

#if defined(__SSE2__)

Extent encode(const std::uint16_t* light, const std::uint16_t* bloom, int count, std::int16_t* to) {
    const Encoding& table = encoding();
    Extent extent{count, 0};
    int x = 0;
    for (; x + 2 <= count; x += 2) {
        const __m128i two = shownLight(light, bloom, x);
        std::array<std::uint64_t, 2> pixels{};
        if (_mm_movemask_epi8(_mm_cmpeq_epi16(two, _mm_setzero_si128())) != 0xFFFF) {
            pixels = {encodedPixel<0>(two, table), encodedPixel<4>(two, table)};
            extent.from = std::min(extent.from, x);
            extent.to = x + 2;
        }
        std::memcpy(to + 4 * static_cast<std::ptrdiff_t>(x), pixels.data(), sizeof(pixels));
    }
    encodeRun(light, bloom, x, count, to, extent);
    return extent;
}

void stretch(const std::int16_t* from, const Taps* taps, int first, int last, std::int16_t* to) {
    int x = first;
    for (; x + 2 <= last; x += 2)
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 4 * static_cast<std::ptrdiff_t>(x)),
                         _mm_packs_epi32(stretched(from, taps[x]), stretched(from, taps[x + 1])));
    stretchPortable(from, taps, x, last, to);
}

void mix(const FourRows& rows, const std::int32_t* noise, int first, int last, std::uint32_t* to) {
    const Mixer mixer(rows);
    const __m128i opaque = _mm_set1_epi32(static_cast<int>(kOpaque));
    int x = first;
    for (; x + 4 <= last; x += 4) {
        const __m128i four = _mm_packus_epi16(mixer.two(x, noise), mixer.two(x + 2, noise));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to + x), _mm_or_si128(four, opaque));
    }
    mixPortable(rows, noise, x, last, to);
}

#else

Extent encode(const std::uint16_t* light, const std::uint16_t* bloom, int count, std::int16_t* to) {
    return encodePortable(light, bloom, count, to);
}

void stretch(const std::int16_t* from, const Taps* taps, int first, int last, std::int16_t* to) {
    stretchPortable(from, taps, first, last, to);
}

void mix(const FourRows& rows, const std::int32_t* noise, int first, int last, std::uint32_t* to) {
    mixPortable(rows, noise, first, last, to);
}

#endif

}  // namespace platform::rows
