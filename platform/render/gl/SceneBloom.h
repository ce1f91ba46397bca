// SPDX-License-Identifier: MIT
// Spreads a scene's bright light with OpenGL; private to platform/render.
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
        float inputScale = 1.0F;  // makes light of what the scene's image holds
        double sigma = 1.0;       // pixels of the scene
        bool fine = true;
        GLenum format = GL_RGBA16F;
    };

    // The draw calls it took; none if the driver cannot draw into what it needs,
    // and then there is no bloom. Expects no depth test and no blending.
    int draw(const GlImage& scene, const Options& options);

    // Valid after a draw with calls.
    [[nodiscard]] const GlImage& image() const { return images_[images_.size() - 2]; }
    // The part of it that the scene covers.
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
    // Bright light, each halving, and as the last one beside it for the blur
    // along x.
    std::vector<GlImage> images_;
    glm::vec2 covered_{1.0F};
};

}  // namespace platform
