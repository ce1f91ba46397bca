// SPDX-License-Identifier: MIT
// The meshes that a scene's drawer keeps in video memory; private to
// platform/render.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/render/gl/GlObjects.h"
#include "platform/scene/DrawList.h"

namespace platform {

// One mesh, or several that are drawn at once, as OpenGL draws it.
struct GlMesh {
    GlVertexArray vertexArray;
    GlBuffer vertices;
    GlBuffer indices;
    GLsizei indexCount = 0;
    GLenum mode = GL_TRIANGLES;
};

// A batch, and where its instances lie among those that are drawn.
struct PlacedBatch {
    const DrawBatch* batch = nullptr;
    std::uint32_t first = 0;
};

// Keeps them by the ids of what they are made of. A line is kept as a flat
// quad that the shader widens.
class SceneMeshes {
  public:
    explicit SceneMeshes(int keepDraws);

    // The mesh of one batch, to be drawn once per instance.
    const GlMesh& find(const PlacedBatch& batch) { return find({&batch, 1}, false); }

    // The meshes of all these batches as one, each as often as it has instances,
    // to be drawn once: vertices know which instance is theirs, counted from the
    // first batch's first.
    const GlMesh& findMerged(std::span<const PlacedBatch> batches) { return find(batches, true); }

    // Ends a draw: drops what none has shown for a while.
    void endDraw();
    [[nodiscard]] int count() const { return static_cast<int>(kept_.size()); }

  private:
    struct Part {
        std::uint64_t mesh = 0;
        std::uint32_t count = 0;
        friend bool operator==(const Part&, const Part&) = default;
    };
    struct Kept {
        GlMesh mesh;
        std::vector<Part> parts;
        std::uint64_t lastDraw = 0;
    };

    const GlMesh& find(std::span<const PlacedBatch> batches, bool merged);

    std::uint64_t keepDraws_;
    std::uint64_t draw_ = 1;
    std::unordered_multimap<std::uint64_t, Kept> kept_;  // by a hash of their parts
};

}  // namespace platform
