// SPDX-License-Identifier: MIT
#include "platform/render/cpu/PixelRows.h"

#include <algorithm>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform::rows {

namespace {

// An 8-bit component c is widened to c * 257: 65535 is then the whole for
// components and shares alike, and a product is the upper half of 32 bits.
constexpr std::uint32_t kWhole = 65535;

std::uint32_t times(std::uint32_t a, std::uint32_t b) {
    return (a * b) >> 16;
}

std::uint32_t narrow(std::uint32_t wide) {
    return (wide - (wide >> 8) + 128) >> 8;
}

std::uint32_t component(std::uint32_t pixel, int shift) {
    return ((pixel >> shift) & 0xFF) * 257;
}

// `colour` holds the wide components, blue first.
std::uint32_t over(std::uint32_t below, const std::uint32_t (&colour)[4]) {
    const std::uint32_t through = kWhole - colour[3];
    std::uint32_t result = 0;
    for (int i = 0; i < 4; ++i) {
        const std::uint32_t sum = colour[i] + times(component(below, 8 * i), through);
        result |= narrow(std::min(sum, kWhole)) << (8 * i);
    }
    return result;
}

// The number of `unit`s nearest to a component, clamped to [0, 1]. The library's
// rounding costs a function call per component; no value here is negative.
std::uint32_t nearest(float component, float unit) {
    // NOLINTNEXTLINE(bugprone-incorrect-roundings)
    return static_cast<std::uint32_t>(std::clamp(component, 0.0F, 1.0F) * unit + 0.5F);
}

std::uint32_t wide(float component) {
    return nearest(component, 65535.0F);
}

#if defined(__SSE2__)

// Two pixels of 16-bit components: each pixel's alpha in all four places.
__m128i alphas(__m128i two) {
    return _mm_shufflehi_epi16(_mm_shufflelo_epi16(two, 0xFF), 0xFF);
}

__m128i overWide(__m128i below, __m128i above, __m128i through) {
    const __m128i sum = _mm_adds_epu16(above, _mm_mulhi_epu16(below, through));
    const __m128i rounded =
        _mm_add_epi16(_mm_sub_epi16(sum, _mm_srli_epi16(sum, 8)), _mm_set1_epi16(128));
    return _mm_srli_epi16(rounded, 8);
}

__m128i blendFour(__m128i below, __m128i above, __m128i alpha) {
    const __m128i all = _mm_set1_epi16(-1);
    const __m128i low = _mm_mulhi_epu16(_mm_unpacklo_epi8(above, above), alpha);
    const __m128i high = _mm_mulhi_epu16(_mm_unpackhi_epi8(above, above), alpha);
    return _mm_packus_epi16(
        overWide(_mm_unpacklo_epi8(below, below), low, _mm_xor_si128(alphas(low), all)),
        overWide(_mm_unpackhi_epi8(below, below), high, _mm_xor_si128(alphas(high), all)));
}

__m128i load(const std::uint32_t* from) {
    return _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
}

void store(std::uint32_t* to, __m128i four) {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), four);
}

#endif

}  // namespace

Share share(float alpha) {
    return static_cast<Share>(wide(alpha));
}

std::uint32_t pixel(const Rgba& colour) {
    const auto byte = [](float component) { return nearest(component, 255.0F); };
    return byte(colour.a) << 24 | byte(colour.r) << 16 | byte(colour.g) << 8 | byte(colour.b);
}

void blendPortable(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha) {
    for (int i = 0; i < count; ++i) {
        const std::uint32_t above = from[i];
        const std::uint32_t colour[4] = {
            times(component(above, 0), alpha), times(component(above, 8), alpha),
            times(component(above, 16), alpha), times(component(above, 24), alpha)};
        to[i] = over(to[i], colour);
    }
}

#if defined(__SSE2__)

void blend(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha) {
    const __m128i share = _mm_set1_epi16(static_cast<short>(alpha));
    int i = 0;
    for (; i + 4 <= count; i += 4)
        store(to + i, blendFour(load(to + i), load(from + i), share));
    for (; i < count; ++i) {
        const __m128i one = blendFour(_mm_cvtsi32_si128(static_cast<int>(to[i])),
                                      _mm_cvtsi32_si128(static_cast<int>(from[i])), share);
        to[i] = static_cast<std::uint32_t>(_mm_cvtsi128_si32(one));
    }
}

#else

void blend(std::uint32_t* to, const std::uint32_t* from, int count, Share alpha) {
    blendPortable(to, from, count, alpha);
}

#endif

void blend(std::uint32_t* to, int count, const Rgba& colour) {
    const std::uint32_t components[4] = {wide(colour.b), wide(colour.g), wide(colour.r),
                                         wide(colour.a)};
    if (components[3] == kWhole) {
        fill(to, count, pixel(colour));
        return;
    }
    for (int i = 0; i < count; ++i)
        to[i] = over(to[i], components);
}

void blend(std::uint32_t* to, const Rgba* from, const float* alpha, int count) {
    constexpr float kUnit = 1.0F / 255.0F;
    for (int i = 0; i < count; ++i) {
        const float own = alpha[i];
        const float through = (1.0F - from[i].a * own) * kUnit;
        const float above[4] = {from[i].b, from[i].g, from[i].r, from[i].a};
        std::uint32_t result = 0;
        for (int c = 0; c < 4; ++c) {
            const auto below = static_cast<float>((to[i] >> (8 * c)) & 0xFF);
            result |= nearest(above[c] * own + below * through, 255.0F) << (8 * c);
        }
        to[i] = result;
    }
}

}  // namespace platform::rows
