// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

// The inner loops of making a picture out of light with the processor. A row of
// the picture on its way is four 16-bit components a pixel, blue first, the
// fourth unused: encoded, 64 for each of the 255 steps. Weights are in 16384ths.
namespace platform::rows {

inline constexpr int kStep = 64;
inline constexpr int kWhole = 16384;

// Light has four 16-bit components a pixel, red first, the fourth unused.
inline constexpr int kWhite = 16384;

// Pixels from ..< to; what is outside is black.
struct Extent {
    int from = 0;
    int to = 0;
    [[nodiscard]] bool isEmpty() const { return from >= to; }
};

// A pixel's light, its fraction cut off; four components side by side, as vector
// instructions take them.
using Light = float __attribute__((vector_size(16)));
inline void putLight(const Light& light, std::uint16_t* to) {
#if defined(__SSE2__)
    // The instruction saturates signed words, so that a shift by half is needed.
    const __m128i half = _mm_set1_epi32(32768);
    const __m128i whole =
        _mm_sub_epi32(_mm_cvttps_epi32(reinterpret_cast<const __m128&>(light)), half);
    const __m128i words = _mm_xor_si128(_mm_packs_epi32(whole, whole), _mm_set1_epi16(-32768));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to), words);
#else
    for (int i = 0; i < 4; ++i)
        to[i] = static_cast<std::uint16_t>(std::clamp(light[i], 0.0F, 65535.0F));
#endif
}

// Light plus bloom (null: none) clamped to white and encoded.
Extent encode(const std::uint16_t* light, const std::uint16_t* bloom, int count, std::int16_t* to);

// Of four neighbours, the first of which may lie outside.
struct Taps {
    int first = 0;
    std::array<std::int16_t, 4> weight{};
};

// Between the second and the third of the four, `share` of the way: cubic, and
// exactly the second at 0.
[[nodiscard]] std::array<std::int16_t, 4> cubicWeights(double share);

// Pixels first ..< last of a row stretched: each from the four of its taps, in a
// row that must have what they ask for.
void stretch(const std::int16_t* from, const Taps* taps, int first, int last, std::int16_t* to);

// Pixels first ..< last of four rows weighed and rounded to opaque pixels, the
// picture's fraction being cut off after `noise` (of 2 to the 20th) is added.
struct FourRows {
    std::array<const std::int16_t*, 4> row{};
    std::array<std::int16_t, 4> weight{};
};
void mix(const FourRows& rows, const std::int32_t* noise, int first, int last, std::uint32_t* to);

// The same to the last bit without the processor's vector instructions.
Extent encodePortable(const std::uint16_t* light, const std::uint16_t* bloom, int count,
                      std::int16_t* to);
void stretchPortable(const std::int16_t* from, const Taps* taps, int first, int last,
                     std::int16_t* to);
void mixPortable(const FourRows& rows, const std::int32_t* noise, int first, int last,
                 std::uint32_t* to);

}  // namespace platform::rows
