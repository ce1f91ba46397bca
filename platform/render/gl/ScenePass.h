// SPDX-License-Identifier: MIT
// The drawing of a scene's surfaces; private to platform/render.
#pragma once

#include <QSize>
#include <cstdint>
#include <glm/vec4.hpp>
#include <span>
#include <vector>

#include "platform/render/gl/GlObjects.h"
#include "platform/render/gl/SceneMeshes.h"
#include "platform/render/gl/ScenePrograms.h"
#include "platform/render/gl/SceneTextures.h"
#include "platform/scene/DrawList.h"

namespace platform {

struct ScenePassOptions {
    QSize size;  // of the image, pixels
    float pixelsPerPoint = 1.0F;
    float shownPixel = 1.0F;   // a shown pixel, in pixels of the image
    float outputScale = 1.0F;  // the stored value of one unit of light
    int anisotropy = 1;
};

// Draws a list's surfaces, in linear light with alpha multiplied in, into the
// bound framebuffer.
//
// The floor's mirror image is drawn first, then the floor's own light is added,
// then everything else; reflections thus need no image of their own. The depth
// test puts the nearest surface on top, whatever its rendering order.
class ScenePass {
  public:
    explicit ScenePass(int keepDraws);

    // False if the driver refuses a program that common surfaces need.
    bool prepare();

    // Draws the background and all surfaces. Returns the draw calls.
    int draw(const DrawList& list, const ScenePassOptions& options);

    // Whether drawing the list needs a depth buffer.
    [[nodiscard]] static bool needsDepth(const DrawList& list);

    // Whether several samples per pixel would smooth an outline. Surfaces that
    // fade out by themselves, or surround the camera, have no outline.
    [[nodiscard]] static bool needsSamples(const DrawList& list);

    [[nodiscard]] int meshCount() const { return meshes_.count(); }
    [[nodiscard]] int pictureCount() const { return textures_.count(); }

  private:
    void arrange(const DrawList& list);
    void uploadInstances(const DrawList& list);
    void clear(const DrawList& list, bool depth) const;
    void drawBatches(unsigned variant);
    void drawRun(std::span<const PlacedBatch> run, unsigned variant);
    void drawFloor(const DrawFloor& floor);
    void drawFloorPlane(const DrawFloor& floor, const glm::vec4& colour, unsigned variant);
    void setThickness(const SceneProgram& program) const;
    void setBlending(const DrawMaterial& material, bool smoothEdges) const;

    ScenePrograms programs_;
    SceneMeshes meshes_;
    SceneTextures textures_;
    GlTexelBuffer instances_;
    GlVertexArray noVertices_;
    std::vector<PlacedBatch> batches_;  // in drawing order
    std::vector<glm::vec4> staging_;
    GLint maxInstances_ = 0;
    SceneUniforms frame_;
    ScenePassOptions options_;
    std::uint64_t draw_ = 0;
    int drawCalls_ = 0;
};

}  // namespace platform
