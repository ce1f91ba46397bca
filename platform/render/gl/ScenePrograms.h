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

// What a program is made for; a variant is any of them together.
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

// A program by its label and text, with each of `defines` (as "A B C") set.
[[nodiscard]] std::unique_ptr<GlProgram> makeProgram(const char* label, const char* defines,
                                                     const char* vertexText,
                                                     const char* fragmentText);

// What all that is drawn in one frame shares.
struct SceneFrame {
    const DrawList* list = nullptr;
    glm::mat4 viewProjection{1.0F};
    glm::vec2 halfViewport{1.0F};  // pixels
    float outputScale = 1.0F;
    glm::vec4 floorPlane{0.0F};
    glm::vec2 reflection{0.0F};
};

class SceneProgram {
  public:
    SceneProgram(std::unique_ptr<GlProgram> program, unsigned variant);

    // Makes it the one in use, with the frame's values if it has not got them yet.
    void use(const SceneFrame& frame, std::uint64_t draw);

    GLint firstInstance, contentsTransform, thickness, strength, dots, emission;
    GLint world, under, reach, textureSpan, colour;  // of the floor

  private:
    void setFrame(const SceneFrame& frame) const;

    std::unique_ptr<GlProgram> program_;
    const unsigned variant_;
    std::uint64_t frameOf_ = 0;  // the draw whose frame it has
    GLint viewProjection_, cameraPosition_, halfViewport_, zNear_, floorPlane_;
    GLint ambient_, lightCount_, lightPosition_, lightColour_;
    GLint fogColour_, fogRange_, reflection_, outputScale_;
};

// Made when first needed.
class ScenePrograms {
  public:
    // Null if the driver refuses it.
    SceneProgram* find(unsigned variant);

  private:
    std::unordered_map<unsigned, std::unique_ptr<SceneProgram>> programs_;
};

}  // namespace platform
