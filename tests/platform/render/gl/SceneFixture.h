// SPDX-License-Identifier: MIT
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <glm/vec4.hpp>
#include <memory>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GlCalls.h"
#include "platform/render/gl/ScenePass.h"
#include "platform/render/gl/SceneTargets.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Scene.h"

namespace platform::test {

// Light as it was drawn, row by row from the bottom.
struct LightImage {
    QSize size;
    std::vector<glm::vec4> pixels;

    [[nodiscard]] const glm::vec4& at(int x, int y) const {
        return pixels[static_cast<std::size_t>(y * size.width() + x)];
    }
    [[nodiscard]] glm::vec4 middle() const { return at(size.width() / 2, size.height() / 2); }
    [[nodiscard]] glm::vec4 sum() const {
        glm::vec4 total(0.0F);
        for (const glm::vec4& pixel : pixels)
            total += pixel;
        return total;
    }
};

// A black scene seen from the origin down −z: in a square picture, what lies d before
// the camera is seen 2·d high, the camera's angle having grown to 90°.
struct Stage {
    Stage() {
        scene.setBackground(Qt::black);
        camera = std::make_shared<Node>();
        camera->setCamera(lens());
        scene.root().addChild(camera);
    }

    static Camera lens() {
        return {.fieldOfView = 2.0 * std::atan(0.75) * 180.0 / kPi,
                .zNear = 0.05,
                .zFar = 100.0,
                .exposureAdaptation = false};
    }
    NodePtr add(GeometryPtr geometry, const glm::dvec3& position) {
        auto node = std::make_shared<Node>(std::move(geometry));
        node->setPosition(position);
        scene.root().addChild(node);
        return node;
    }
    [[nodiscard]] DrawList list(double aspect = 1.0) const {
        DrawList result;
        extract(scene, aspect, result);
        return result;
    }

    Scene scene;
    NodePtr camera;
};

inline MaterialPtr constant(Contents contents, BlendMode blend = BlendMode::Alpha) {
    auto material = std::make_shared<Material>(std::move(contents));
    material->setLightingModel(LightingModel::Constant);
    material->setBlendMode(blend);
    material->setDoubleSided(true);
    if (blend == BlendMode::Additive) material->setWritesDepth(false);
    return material;
}

inline GeometryPtr square(double side, MaterialPtr material) {
    return makePlane({.width = side, .height = side}, std::move(material));
}

// Gives each test an off-screen context, and fails it for any error that OpenGL
// reports (strict builds).
class SceneGl : public testing::Test {
  protected:
    void SetUp() override {
        context_ = GlContext::create(EglDisplay::offscreen());
        ASSERT_TRUE(context_ && context_->makeCurrent()) << "no OpenGL 3.3";
        pass_ = std::make_unique<ScenePass>(100);
        canvas_ = std::make_unique<SceneCanvas>();
    }
    void TearDown() override {
        pass_.reset();
        canvas_.reset();
        EXPECT_EQ(context_->errors(), 0);
    }

    // The light that the surfaces send, in full floats.
    LightImage light(const DrawList& list, QSize size, double pixelsPerPoint = 1.0) {
        EXPECT_TRUE(canvas_->fit({size, {GL_RGBA32F, 1.0F}, 1, true}));
        canvas_->target();
        pass_->draw(list, {.size = size, .pixelsPerPoint = static_cast<float>(pixelsPerPoint)});
        return read(canvas_->image());
    }

    static LightImage read(const GlImage& image) {
        LightImage result{image.size(), {}};
        result.pixels.resize(static_cast<std::size_t>(result.size.width() * result.size.height()));
        glBindFramebuffer(GL_FRAMEBUFFER, image.framebuffer());
        glReadPixels(0, 0, result.size.width(), result.size.height(), GL_RGBA, GL_FLOAT,
                     result.pixels.data());
        return result;
    }

    std::unique_ptr<GlContext> context_;
    std::unique_ptr<ScenePass> pass_;
    std::unique_ptr<SceneCanvas> canvas_;
};

}  // namespace platform::test
