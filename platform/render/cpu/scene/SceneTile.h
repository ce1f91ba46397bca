// SPDX-License-Identifier: MIT
// A tile of a picture while the processor draws a scene into it; private to
// platform/render.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace platform {

inline constexpr int kTileWidth = 64;  // pixels
inline constexpr int kTileHeight = 32;
// Pixels on both sides of a row that are written and never shown, so that vectors
// need not end where the tile does.
inline constexpr int kTileMargin = 16;
inline constexpr int kTileStride = kTileWidth + 2 * kTileMargin;
inline constexpr int kTilePlane = kTileStride * kTileHeight;
inline constexpr int kSamples = 8;
// Sets of colours.
inline constexpr unsigned kRed = 1;
inline constexpr unsigned kGreen = 2;
inline constexpr unsigned kBlue = 4;
inline constexpr unsigned kAllColours = kRed | kGreen | kBlue;
// Whether a set has red, green or blue, by its number.
inline bool holds(unsigned colours, std::size_t colour) {
    return (colours >> colour & 1U) != 0;
}

// Where the samples of a pixel lie, in pixels from its middle.
inline constexpr std::array<std::array<float, 2>, kSamples> kSamplePlaces{{{0.0625F, -0.1875F},
                                                                           {-0.0625F, 0.1875F},
                                                                           {0.3125F, 0.0625F},
                                                                           {-0.1875F, -0.3125F},
                                                                           {-0.3125F, 0.3125F},
                                                                           {-0.4375F, -0.0625F},
                                                                           {0.1875F, 0.4375F},
                                                                           {0.4375F, -0.4375F}}};
// At least as far as any of them from the middle.
inline constexpr float kFurthestSample = 0.62F;

// Linear light and nearness (1 / depth before the camera, 0 for nothing) of a
// tile's pixels. Nearness is kept once per pixel until an outline needs more;
// light is kept per sample only while opaque surfaces are drawn, and only in pixels that
// surfaces share.
struct SceneTile {
    static constexpr std::size_t kPlane = kTilePlane;

    // Kept of a pixel per sample, not in its planes. Samples that all lie on one face keep the
    // face's number instead of their nearness.
    enum Sampled : std::uint8_t { kNothing = 0, kNear = 1, kNearAndLight = 2, kFace = 4 };
    // The most faces that pixels may keep the number of.
    static constexpr std::size_t kMostFaces = 256;

    int x = 0;  // of the upper left pixel in the picture
    int y = 0;
    int width = 0;  // of the tile's part inside the picture
    int height = 0;
    bool hidesNothing = true;   // no surface has written its nearness yet
    bool sampledNear = false;   // `sampled` holds; else nothing is kept per sample
    bool sampledLight = false;  // light is kept per sample of pixels in these rows:
    int sampledTop = 0;
    int sampledEnd = 0;
    std::array<float*, 3> light{};  // pixel (0, 0) of each plane
    // The colours that have light. The planes of the others are black, whatever they hold.
    unsigned colours = 0;
    // The light of dots and lines above `threshold`, times their coverage of the pixel. A thin
    // dot or line thus blooms as in a larger picture. Valid while
    // hasExcess.
    std::array<float*, 3> excess{};
    bool hasExcess = false;
    unsigned excessColours = 0;  // as `colours`
    float threshold = 0.0F;
    bool blooms = false;
    float* near = nullptr;
    std::uint8_t* sampled = nullptr;  // a Sampled of each pixel
    // A pixel's samples lie side by side, from kSamples times its place on.
    float* sampleNear = nullptr;
    std::uint8_t* face = nullptr;  // of a pixel of kFace
    // The change of each face's nearness from a pixel's middle to its samples.
    std::array<float, kSamples>* faceShifts = nullptr;
    std::size_t faces = 0;
    std::array<float*, 3> sampleLight{};

    [[nodiscard]] static std::ptrdiff_t at(int column, int row) {
        return static_cast<std::ptrdiff_t>(row) * kTileStride + column;
    }
    // The nearness of a sample of a pixel, while `sampled` holds.
    [[nodiscard]] float nearOf(std::ptrdiff_t pixel, std::size_t sample) const {
        if (sampled[pixel] == kNothing) return near[pixel];
        if (sampled[pixel] == kFace) return near[pixel] + faceShifts[face[pixel]][sample];
        return sampleNear[kSamples * pixel + static_cast<std::ptrdiff_t>(sample)];
    }
};

}  // namespace platform
