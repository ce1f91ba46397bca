// SPDX-License-Identifier: MIT
// Draws a scene's surfaces; private to platform/render.
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
    float shownPixel = 1.0F;   // a pixel that is shown, in pixels of the image
    float outputScale = 1.0F;  // what one unit of light is written as
    int anisotropy = 1;
};

// Draws a list's surfaces, in linear light with alpha multiplied in, into the
// framebuffer that is bound.
//
// The mirror image in a floor is drawn first, then the floor's own light is
// added to it, then everything else: so reflecting takes no image of its own.
// What is nearest lies on top by its depth, whatever its rendering order.
class ScenePass {
  public:
    explicit ScenePass(int keepDraws);

    // False if the driver refuses what a common surface needs.
    bool prepare();

    // The background and all surfaces. Returns the draw calls.
    int draw(const DrawList& list, const ScenePassOptions& options);

    // Whether drawing the list needs depths at all.
    [[nodiscard]] static bool needsDepth(const DrawList& list);

    // Whether there is an outline that several samples per pixel would smooth.
    // What fades out by itself has none, nor have surfaces all round the camera.
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
    std::vector<PlacedBatch> batches_;  // in the order in which they are drawn
    std::vector<glm::vec4> staging_;
    GLint maxInstances_ = 0;
    SceneFrame frame_;
    ScenePassOptions options_;
    std::uint64_t draw_ = 0;
    int drawCalls_ = 0;
};

}  // namespace platform
