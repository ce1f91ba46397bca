// SPDX-License-Identifier: MIT
// A scene's bloom with OpenGL; private to platform/render.
#pragma once

#include <memory>
#include <vector>

#include "platform/render/BloomPlan.h"
#include "platform/render/gl/GlProgram.h"
#include "platform/render/gl/SceneTargets.h"

namespace platform {

class SceneBloom {
  public:
    // Null if the driver refuses the shaders.
    [[nodiscard]] static std::unique_ptr<SceneBloom> create();

    struct Options {
        float threshold = 1.0F;
        float inputScale = 1.0F;  // converts the scene image's values to light
        double sigma = 1.0;       // pixels of the scene
        bool fine = true;
        GLenum format = GL_RGBA16F;
    };

    // Returns the draw calls; 0, without bloom, if the driver cannot draw into
    // the needed images. Requires depth test and blending to be off.
    int draw(const GlImage& scene, const Options& options);

    // Valid after a draw with calls.
    [[nodiscard]] const GlImage& image() const { return images_[images_.size() - 2]; }
    // The part of the image that the scene covers.
    [[nodiscard]] glm::vec2 covered() const { return covered_; }

  private:
    struct Programs {
        std::unique_ptr<GlProgram> bright, halve, blur;
        GLint factor, threshold, inputScale, texel, direction, taps, middle, tap;
    };
    explicit SceneBloom(Programs programs);

    bool fit(QSize scene, const Options& options);
    void blur(const GlImage& from, const GlImage& to, glm::vec2 direction) const;

    Programs programs_;
    BloomRequest planned_;
    BloomPlan plan_;
    // The bright light, each halving, and an image of the last one's size for
    // the blur along x.
    std::vector<GlImage> images_;
    glm::vec2 covered_{1.0F};
};

}  // namespace platform
