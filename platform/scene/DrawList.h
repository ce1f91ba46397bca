// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include <QImage>

#include <glm/mat4x4.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>

#include "platform/scene/Material.h"
#include "platform/scene/Mesh.h"

namespace platform {

class Scene;

// Colours in a draw list are linear light.

struct DrawCamera {
    glm::mat4 view{1.0F};        // world to eye
    glm::mat4 projection{1.0F};  // eye to clip, z −1 … 1
    glm::vec3 position{0.0F};    // world
    float fieldOfView = 60.0F;   // vertical, degrees, of this picture
    // The size of a thing in parts of the picture's height, over the size at the camera's own
    // angle; below 1 in a picture whose angle was widened.
    float heightShare = 1.0F;
    float zNear = 1.0F;
    float zFar = 100.0F;
    bool hdr = false;
    float bloomIntensity = 0.0F;  // 0: no bloom
    float bloomThreshold = 1.0F;
    float bloomBlurRadius = 0.0F;  // points
};

struct DrawFog {
    bool active = false;
    float start = 0.0F;
    float end = 0.0F;
    glm::vec3 colour{0.0F};
};

struct DrawLight {
    glm::vec3 position{0.0F};  // world
    glm::vec3 colour{0.0F};    // times its intensity / 1000
};

// A material's state at the moment of extraction.
struct DrawMaterial {
    std::uint64_t id = 0;  // the material's; cache by id and revision
    std::uint64_t revision = 0;
    LightingModel lighting = LightingModel::Constant;
    BlendMode blend = BlendMode::Alpha;
    bool opaque = true;
    bool writesDepth = true;
    bool readsDepth = true;
    bool doubleSided = false;
    WrapMode wrapS = WrapMode::Clamp;
    WrapMode wrapT = WrapMode::Clamp;
    glm::vec4 diffuse{1.0F};            // alpha not multiplied in; white with a picture
    glm::vec3 emission{0.0F};           // times its alpha
    QImage picture;                     // null without one
    qint64 pictureKey = 0;              // the picture's cacheKey(): cache the texture by it
    glm::mat4 contentsTransform{1.0F};  // whole repeats taken off
};

// One instance's data, as a drawer uploads it.
struct DrawInstance {
    glm::mat4 world{1.0F};
    glm::vec4 colour{1.0F};  // multiplies the diffuse colour; alpha not multiplied in
};

// One draw call: `count` instances of one mesh in one material, from index
// `first` of the list's instances.
struct DrawBatch {
    MeshPtr mesh;  // cache its buffers by mesh->id()
    DrawMaterial material;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    int renderingOrder = 0;
};

// The endless plane y = 0 of `world`; (u, v) = (x, z) / textureSpan.
struct DrawFloor {
    glm::mat4 world{1.0F};
    DrawMaterial material;
    float reflectivity = 0.0F;
    float falloffEnd = 0.0F;  // world units; 0: no fall-off
    float textureSpan = 1.0F;
    int renderingOrder = 0;
};

// One complete frame of a scene, and all that a render thread sees of the scene. Filled
// on the main thread; then a value that any thread reads. Meshes and pictures are
// shared. Refilling keeps the capacity, so a steady scene allocates nothing.
//
// Batches stand in drawing order: by rendering order, then opaque, then blended
// back to front. A floor is opaque (or blended) in its own rendering order.
// Materials that only add light and write no depth give the same picture in any
// order; their batches are merged per mesh and material without sorting,
// wherever no covering item lies between them.
struct DrawList {
    double sceneTime = 0.0;
    double aspect = 1.0;
    DrawCamera camera;
    DrawFog fog;
    glm::vec4 background{0.0F};  // alpha not multiplied in
    glm::vec3 ambient{0.0F};     // the ambient lights' sum
    std::vector<DrawLight> lights;
    std::optional<DrawFloor> floor;  // the first floor found
    std::vector<DrawBatch> batches;
    std::vector<DrawInstance> instances;

    // The working space of extract().
    struct Item {
        const Mesh* mesh = nullptr;
        const MeshPtr* handle = nullptr;
        const Material* material = nullptr;
        int renderingOrder = 0;
        bool blended = false;
        std::uint32_t layer = 0;   // the number of covering items behind
        float depth = 0.0F;        // along the view direction
        std::uint32_t staged = 0;  // its instance, in the order found
    };
    struct Scratch {
        std::vector<Item> items;
        std::vector<DrawInstance> instances;
    } scratch;
};

// Fills `out` with the scene in its present state, seen from its point of view;
// without one, from (0, 0, 15) with a default camera. aspect = width / height.
// Resolves node animations and billboards; leaves out hidden and empty things.
// Main thread; the caller owns both.
void extract(const Scene& scene, double aspect, DrawList& out);

}  // namespace platform
