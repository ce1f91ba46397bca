// SPDX-License-Identifier: MIT
// Meshes that a scene's drawer keeps in video memory; private to
// platform/render.
#pragma once

#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "platform/render/gl/GlObjects.h"
#include "platform/scene/DrawList.h"

namespace platform {

// One mesh in OpenGL's form, or several merged for one draw call.
struct GlMesh {
    GlVertexArray vertexArray;
    GlBuffer vertices;
    GlBuffer indices;
    GLsizei indexCount = 0;
    GLenum mode = GL_TRIANGLES;
};

// A batch, and its first instance among the uploaded ones.
struct PlacedBatch {
    const DrawBatch* batch = nullptr;
    std::uint32_t first = 0;
};

// Caches meshes by the ids of their parts. A line is stored as a flat quad that
// the shader widens.
class SceneMeshes {
  public:
    explicit SceneMeshes(int keepDraws);

    // The mesh of one batch, for an instanced draw.
    const GlMesh& find(const PlacedBatch& batch) { return find({&batch, 1}, false); }

    // The meshes of all these batches as one mesh, each repeated per instance,
    // for a plain draw. Each vertex holds its instance's index, counted from
    // the first batch's first.
    const GlMesh& findMerged(std::span<const PlacedBatch> batches) { return find(batches, true); }

    // Ends a draw: drops meshes unused for a while.
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
    std::unordered_multimap<std::uint64_t, Kept> kept_;  // by a hash of the parts
};

}  // namespace platform
