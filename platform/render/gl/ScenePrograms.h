// SPDX-License-Identifier: MIT
// The shaders of a scene's surfaces; private to platform/render.
#pragma once

#include <cstdint>
#include <glm/mat4x4.hpp>
#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <glm/vec4.hpp>
#include <memory>
#include <unordered_map>

#include "platform/render/gl/GlProgram.h"

namespace platform {

struct DrawList;

// The features of a program; a variant is any combination.
enum SceneVariant : unsigned {
    kTextured = 1U,
    kLambert = 2U,
    kAdditive = 4U,
    kFog = 8U,
    kLines = 16U,
    kPoints = 32U,
    kMirrored = 64U,
    kFloor = 128U,
    kFading = 256U,
};

// Makes a program from its label and text, with each of `defines` (as "A B C") defined.
[[nodiscard]] std::unique_ptr<GlProgram> makeProgram(const char* label, const char* defines,
                                                     const char* vertexText,
                                                     const char* fragmentText);

// The values that all draws of one frame share.
struct SceneUniforms {
    const DrawList* list = nullptr;
    glm::mat4 viewProjection{1.0F};
    glm::vec2 halfViewport{1.0F};  // pixels
    float outputScale = 1.0F;
    int anisotropy = 1;
    glm::vec4 floorPlane{0.0F};
    glm::vec2 reflection{0.0F};
};

class SceneProgram {
  public:
    SceneProgram(std::unique_ptr<GlProgram> program, unsigned variant);

    // Makes the program current, and sets the frame's values unless they are set.
    void use(const SceneUniforms& frame, std::uint64_t draw);

    GLint firstInstance, contentsTransform, thickness, strength, dots, emission, middle;
    GLint world, under, reach, textureSpan, colour;  // the floor's

  private:
    void setFrame(const SceneUniforms& frame) const;

    std::unique_ptr<GlProgram> program_;
    const unsigned variant_;
    std::uint64_t frameOf_ = 0;  // the draw whose frame values are set
    GLint viewProjection_, cameraPosition_, halfViewport_, zNear_, floorPlane_;
    GLint ambient_, lightCount_, lightPosition_, lightColour_;
    GLint fogColour_, fogRange_, reflection_, outputScale_, mostSamples_;
};

// Programs, each made on first need.
class ScenePrograms {
  public:
    // The program of that variant; null if the driver refuses it.
    SceneProgram* find(unsigned variant);

  private:
    std::unordered_map<unsigned, std::unique_ptr<SceneProgram>> programs_;
};

}  // namespace platform
