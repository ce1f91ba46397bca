// SPDX-License-Identifier: MIT
#include "platform/render/gl/ScenePrograms.h"

#include <algorithm>
#include <array>
#include <glm/gtc/type_ptr.hpp>
#include <sstream>
#include <string>
#include <utility>

#include "floor.vert.h"
#include "platform/scene/DrawList.h"
#include "scene.frag.h"
#include "scene.vert.h"

namespace platform {

namespace {

constexpr int kMaxLights = 8;  // equals the shaders' arrays

std::string defined(const char* text, const std::string& lines) {
    std::string result(text);
    return result.insert(result.find('\n') + 1, lines);
}

std::string definesOf(unsigned variant) {
    constexpr std::array<std::pair<SceneVariant, const char*>, 8> kNames{
        {{kTextured, "TEXTURED "},
         {kLambert, "LAMBERT "},
         {kAdditive, "ADDITIVE "},
         {kFog, "FOG "},
         {kFading, "FADING "},
         {kLines, "LINES "},
         {kPoints, "POINTS "},
         {kMirrored, "MIRRORED "}}};
    std::string result;
    for (const auto& [bit, name] : kNames)
        if ((variant & bit) != 0) result += name;
    return result;
}

}  // namespace

std::unique_ptr<GlProgram> makeProgram(const char* label, const char* defines,
                                       const char* vertexText, const char* fragmentText) {
    std::string lines;
    std::istringstream words(defines);
    for (std::string word; words >> word;)
        lines += "#define " + word + "\n";
    // Every shader text numbers its own lines from the #version.
    auto program = std::make_unique<GlProgram>(label, defined(vertexText, lines).c_str(),
                                               defined(fragmentText, lines).c_str());
    return program->isValid() ? std::move(program) : nullptr;
}

SceneProgram::SceneProgram(std::unique_ptr<GlProgram> program, unsigned variant)
    : program_(std::move(program)), variant_(variant) {
    const auto at = [this](const char* name) { return program_->uniform(name); };
    firstInstance = at("firstInstance");
    contentsTransform = at("contentsTransform");
    thickness = at("thickness");
    strength = at("strength");
    dots = at("dots");
    emission = at("emission");
    middle = at("middle");
    world = at("world");
    under = at("under");
    reach = at("reach");
    textureSpan = at("textureSpan");
    colour = at("colour");
    viewProjection_ = at("viewProjection");
    cameraPosition_ = at("cameraPosition");
    halfViewport_ = at("halfViewport");
    zNear_ = at("zNear");
    floorPlane_ = at("floorPlane");
    ambient_ = at("ambient");
    lightCount_ = at("lightCount");
    lightPosition_ = at("lightPosition");
    lightColour_ = at("lightColour");
    fogColour_ = at("fogColour");
    fogRange_ = at("fogRange");
    reflection_ = at("reflection");
    outputScale_ = at("outputScale");
    mostSamples_ = at("mostSamples");
    program_->use();
    glUniform1i(at("picture"), 0);
    glUniform1i(at("instances"), 1);
}

void SceneProgram::use(const SceneUniforms& frame, std::uint64_t draw) {
    program_->use();
    if (std::exchange(frameOf_, draw) != draw) setFrame(frame);
}

void SceneProgram::setFrame(const SceneUniforms& frame) const {
    const DrawList& list = *frame.list;
    const DrawCamera& camera = list.camera;
    glUniformMatrix4fv(viewProjection_, 1, GL_FALSE, glm::value_ptr(frame.viewProjection));
    glUniform3fv(cameraPosition_, 1, glm::value_ptr(camera.position));
    glUniform2fv(halfViewport_, 1, glm::value_ptr(frame.halfViewport));
    glUniform1f(zNear_, camera.zNear);
    glUniform4fv(floorPlane_, 1, glm::value_ptr(frame.floorPlane));
    glUniform2fv(reflection_, 1, glm::value_ptr(frame.reflection));
    glUniform1f(outputScale_, frame.outputScale);
    if ((variant_ & kTextured) != 0) glUniform1i(mostSamples_, frame.anisotropy);
    if ((variant_ & kFog) != 0) {
        glUniform3fv(fogColour_, 1, glm::value_ptr(list.fog.colour));
        glUniform2f(fogRange_, list.fog.start, 1.0F / (list.fog.end - list.fog.start));
    }
    if ((variant_ & kLambert) == 0) return;
    glUniform3fv(ambient_, 1, glm::value_ptr(list.ambient));
    std::array<glm::vec3, kMaxLights> positions, colours;
    const auto count = std::min<std::size_t>(list.lights.size(), kMaxLights);
    for (std::size_t i = 0; i < count; ++i) {
        positions[i] = list.lights[i].position;
        if ((variant_ & kMirrored) != 0) {
            const glm::vec3 normal(frame.floorPlane);
            const float above = glm::dot(normal, positions[i]) + frame.floorPlane.w;
            positions[i] -= 2.0F * above * normal;
        }
        positions[i] -= camera.position;
        colours[i] = list.lights[i].colour;
    }
    glUniform1i(lightCount_, static_cast<GLint>(count));
    if (count == 0) return;
    glUniform3fv(lightPosition_, static_cast<GLsizei>(count), glm::value_ptr(positions[0]));
    glUniform3fv(lightColour_, static_cast<GLsizei>(count), glm::value_ptr(colours[0]));
}

SceneProgram* ScenePrograms::find(unsigned variant) {
    const auto found = programs_.find(variant);
    if (found != programs_.end()) return found->second.get();
    const char* const vertex = (variant & kFloor) != 0 ? kFloorVert : kSceneVert;
    auto program = makeProgram("scene", definesOf(variant).c_str(), vertex, kSceneFrag);
    auto& kept = programs_[variant];
    if (program) kept = std::make_unique<SceneProgram>(std::move(program), variant);
    return kept.get();
}

}  // namespace platform
