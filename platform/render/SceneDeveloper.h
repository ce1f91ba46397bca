// SPDX-License-Identifier: MIT
// Makes the picture out of a scene's light without OpenGL; private to
// platform/render.
#pragma once

#include <QSize>
#include <array>
#include <cstdint>
#include <vector>

#include "platform/render/BloomPlan.h"
#include "platform/render/CpuDrawer.h"
#include "platform/render/RowPool.h"

namespace platform {

// A scene's image as kSixteenBits: red, green, blue and alpha of each pixel,
// bottom row first.
struct SceneLight {
    const std::uint16_t* pixels = nullptr;
    QSize size;
};

// Bloom, stretching to the size shown, encoding and rounding: what the shaders
// do, several times faster than a processor runs those. Stretches by cubic
// interpolation of the encoded picture, which keeps small digits crisp. All
// pixels become opaque.
class SceneDeveloper {
  public:
    struct Bloom {
        float intensity = 0.0F;  // 0: none
        float threshold = 1.0F;
        double sigma = 1.0;  // pixels of the scene's image
    };

    // Fills all of `picture`. Allocates nothing when the sizes are as before.
    void develop(const SceneLight& light, const Bloom& bloom, const PixelBuffer& picture);

    // Four components side by side, as the processor's vector instructions take
    // them. Of light red first, of the picture blue first.
    using Pixel = float __attribute__((vector_size(16)));

  private:
    // Four pixels or rows, the first of which may lie outside, and their weights.
    struct Taps {
        int first = 0;
        std::array<float, 4> weight{};
    };
    // A row of the picture before it is stretched; black outside from ..< to.
    struct Row {
        int number = -1;
        int from = 0;
        int to = 0;
        std::vector<Pixel> pixels;
    };
    // What one band of rows is worked out with.
    struct Desk {
        std::vector<std::uint32_t> sums;
        std::vector<Pixel> glow;
        std::array<Row, 4> rows;
        Row between;  // padded by kMargin pixels at both ends
    };

    void fit(QSize scene, QSize shown, const Bloom& bloom);
    template <typename Work>
    void forRows(int rows, const Work& work);
    void gatherBright(int row, float threshold, Desk& desk);
    void blurAlong(int row);
    void blurAcross(int row);
    void placeGlow(int row, float intensity, Desk& desk) const;
    void encode(int number, float intensity, Desk& desk, Row& row) const;
    const Row& encoded(int number, float intensity, Desk& desk) const;
    void show(int y, float intensity, Desk& desk, std::uint32_t* to) const;

    RowPool pool_;
    SceneLight light_;
    QSize shown_;
    BloomRequest planned_;
    BloomPlan plan_;
    std::vector<Desk> desks_;
    std::vector<Pixel> bright_;
    std::vector<Pixel> blurred_;
    std::vector<Taps> across_;
    std::vector<Taps> down_;
};

}  // namespace platform
