// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "tests/support/SceneSnapshot.h"
#include "platform/scene/Shading.h"
#include "tests/platform/render/gl/SceneFixture.h"

namespace platform::test {

// Draws whole pictures, and fails a test for any error that OpenGL reports
// (strict builds).
class ScenePictures : public testing::Test {
  protected:
    void SetUp() override { restart({}); }
    void TearDown() override {
        if (!snapshot_) return;
        EXPECT_EQ(snapshot_->errors(), 0);
    }
    void restart(const SceneRenderer::Options& options) {
        snapshot_ = SceneSnapshot::create(options);
        ASSERT_TRUE(snapshot_) << "no OpenGL that can draw scenes";
    }

    QImage picture(const Stage& stage, QSize size, const SceneQuality& quality = {}) {
        const double aspect = 1.0 * size.width() / size.height();
        return snapshot_->picture(stage.list(aspect), size, 1.0, quality);
    }

    std::unique_ptr<SceneSnapshot> snapshot_;
};

inline int green(const QImage& image, int x, int y) {
    return qGreen(image.pixel(x, y));
}

// Light, summed over a picture.
inline double lightOf(const QImage& image) {
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            sum += srgbDecode(green(image, x, y) / 255.0);
    return sum;
}

}  // namespace platform::test
