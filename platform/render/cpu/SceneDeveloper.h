// SPDX-License-Identifier: MIT
// Makes the picture out of a scene's light without OpenGL; private to
// platform/render.
#pragma once

#include <QSize>
#include <array>
#include <cstdint>
#include <vector>

#include "platform/render/BloomPlan.h"
#include "platform/render/cpu/CpuDrawer.h"
#include "platform/render/cpu/LightRows.h"
#include "platform/render/cpu/RowPool.h"

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

  private:
    // Four components side by side, as vector instructions take them.
    using Glow = float __attribute__((vector_size(16)));

    // A row of the scene as wide as it is shown.
    struct Row {
        int number = -1;
        rows::Extent extent;
        std::vector<std::int16_t> pixels;
    };
    // What one band of rows is worked out with.
    struct Desk {
        std::vector<std::uint32_t> sums;
        // At one row of the scene: the bloom's pixels along it, the bloom of the
        // scene's pixels, and their picture with margins.
        std::vector<Glow> glow;
        std::vector<std::uint16_t> bloom;
        std::vector<std::int16_t> encoded;
        std::array<Row, 4> rows;
    };

    void fit(QSize scene, QSize shown, const Bloom& bloom);
    template <typename Work>
    void forRows(int rows, const Work& work);
    void gatherBright(int row, float threshold, Desk& desk);
    void blurAlong(int row);
    void blurAcross(int row);
    bool placeGlow(int row, float intensity, Desk& desk) const;
    void spreadGlow(Desk& desk) const;
    void stretch(Desk& desk, rows::Extent encoded, Row& row) const;
    const Row& stretched(int number, float intensity, Desk& desk) const;
    void show(int y, float intensity, Desk& desk, std::uint32_t* to) const;

    RowPool pool_;
    SceneLight light_;
    QSize shown_;
    BloomRequest planned_;
    BloomPlan plan_;
    std::vector<Desk> desks_;
    std::vector<Glow> bright_;
    std::vector<Glow> blurred_;
    std::vector<rows::Taps> across_;
    std::vector<rows::Taps> down_;
    std::vector<std::int32_t> noise_;  // kNoiseRows rows as wide as shown
};

}  // namespace platform
