// SPDX-License-Identifier: MIT
#include "platform/render/gl/SceneRenderer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <glm/gtc/type_ptr.hpp>
#include <optional>

#include "composite.frag.h"
#include "platform/render/egl/Egl.h"
#include "platform/render/gl/GpuTimer.h"
#include "platform/render/gl/SceneBloom.h"
#include "platform/render/gl/ScenePass.h"
#include "platform/render/gl/SceneTargets.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Shading.h"
#include "post.vert.h"

namespace platform {

namespace {

// The last step of drawing, with bloom or without.
struct Composite {
    std::unique_ptr<GlProgram> program;
    GLint inputScale = -1;
    GLint bloomCoord = -1;
    GLint intensity = -1;

    explicit Composite(const char* defines)
        : program(makeProgram("composite", defines, kPostVert, kCompositeFrag)) {
        if (!program) return;
        inputScale = program->uniform("inputScale");
        bloomCoord = program->uniform("bloomCoord");
        intensity = program->uniform("intensity");
        program->use();
        glUniform1i(program->uniform("scene"), 0);
        glUniform1i(program->uniform("bloom"), 1);
    }
};

// From a scene's light to its picture.
struct Finish {
    std::unique_ptr<SceneBloom> bloom = SceneBloom::create();
    Composite plain{""};
    Composite glowing{"BLOOM"};
    Composite glowingSmoothly{"BLOOM SMOOTH"};

    [[nodiscard]] bool isComplete() const {
        return bloom && plain.program && glowing.program && glowingSmoothly.program;
    }
};

QSize internalSize(QSize shown, double resolution) {
    return {std::max(1, static_cast<int>(std::lround(shown.width() * resolution))),
            std::max(1, static_cast<int>(std::lround(shown.height() * resolution)))};
}

}  // namespace

struct SceneRenderer::Parts {
    explicit Parts(const Options& given)
        : options(given), pass(given.keepDraws), timer(given.timed) {}

    bool prepare();
    bool fit(const DrawList& list, QSize size, const SceneQuality& wanted);
    bool fitSamples(const DrawList& list, QSize size, const SceneFormat& format);
    void start(const DrawList& list, const SceneQuality& wanted);
    void drawScene(const DrawList& list, double scale, int shown);
    bool drawBloom(const DrawList& list, double scale);
    void drawComposite(const DrawList& list, const SceneTarget& target, bool bloom);

    Options options;
    ScenePass pass;
    Finish finish;
    SceneCanvas canvas;
    GlVertexArray noVertices = GlVertexArray::make();
    GpuTimer timer;
    SceneQuality quality;
    // A request that was fitted with less than wanted, so that the next frame does not ask the
    // driver again for what it refused.
    struct Request {
        QSize size;
        int samples = 0;
        bool depth = false;
        bool operator==(const Request&) const = default;
    };
    std::optional<Request> fitted;
    int drawCalls = 0;
    int maxSamples = 0;
};

bool SceneRenderer::Parts::prepare() {
    if (!finish.isComplete() || !pass.prepare()) return false;
    glGetIntegerv(GL_MAX_SAMPLES, &maxSamples);
    maxSamples = std::min(maxSamples, options.maxSamples);
    return fit({}, {16, 16}, {});
}

void SceneRenderer::Parts::start(const DrawList& list, const SceneQuality& wanted) {
    quality = wanted;
    const int most = ScenePass::needsSamples(list) ? std::max(1, maxSamples) : 1;
    quality.samples = std::clamp(wanted.samples, 1, most);
}

// Fits the canvas, with fewer samples where the driver cannot do more.
bool SceneRenderer::Parts::fitSamples(const DrawList& list, QSize size, const SceneFormat& format) {
    const bool depth = ScenePass::needsDepth(list);
    for (int samples = quality.samples; samples >= 1; samples /= 2) {
        if (!canvas.fit({size, format, samples, depth})) continue;
        quality.samples = samples;
        return true;
    }
    return false;
}

// Fits the canvas, with a smaller range of light where the driver cannot do more.
bool SceneRenderer::Parts::fit(const DrawList& list, QSize size, const SceneQuality& wanted) {
    start(list, wanted);
    const Request request{size, quality.samples, ScenePass::needsDepth(list)};
    if (fitted == request) {
        quality.samples = canvas.options().samples;
        return true;
    }
    const bool fits = (options.floatTargets && (fitSamples(list, size, kHalfFloats) ||
                                                fitSamples(list, size, kSixteenBits))) ||
                      fitSamples(list, size, kEightBits);
    fitted = fits ? std::optional(request) : std::nullopt;
    return fits;
}

// `shown` is the height in shown pixels.
void SceneRenderer::Parts::drawScene(const DrawList& list, double scale, int shown) {
    canvas.target();
    drawCalls += pass.draw(list, {.size = canvas.options().size,
                                  .pixelsPerPoint = static_cast<float>(scale),
                                  .shownPixel = static_cast<float>(canvas.options().size.height()) /
                                                static_cast<float>(shown),
                                  .outputScale = canvas.options().format.scale,
                                  .anisotropy = quality.anisotropy});
    drawCalls += canvas.resolve();
}

bool SceneRenderer::Parts::drawBloom(const DrawList& list, double scale) {
    const DrawCamera& camera = list.camera;
    if (camera.bloomIntensity <= 0.0F || camera.bloomBlurRadius <= 0.0F) return false;
    const SceneFormat& format = canvas.options().format;
    // Light above the threshold can be faint, so bloom never uses eight bits.
    const int calls = finish.bloom->draw(
        canvas.image(),
        {.threshold = camera.bloomThreshold,
         .inputScale = 1.0F / format.scale,
         .sigma = bloomSigma(camera.bloomBlurRadius, scale),
         .fine = quality.fineBloom,
         .format = static_cast<GLenum>(options.floatTargets ? GL_RGBA16F : GL_RGBA16)});
    drawCalls += calls;
    return calls > 0;
}

void SceneRenderer::Parts::drawComposite(const DrawList& list, const SceneTarget& target,
                                         bool withBloom) {
    const Composite& composite = !withBloom          ? finish.plain
                                 : quality.fineBloom ? finish.glowingSmoothly
                                                     : finish.glowing;
    glBindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
    glViewport(target.origin.x(), target.origin.y(), target.size.width(), target.size.height());
    composite.program->use();
    glUniform1f(composite.inputScale, 1.0F / canvas.options().format.scale);
    if (withBloom) {
        const glm::vec2 covered = finish.bloom->covered();
        glUniform2fv(composite.bloomCoord, 1, glm::value_ptr(covered));
        glUniform1f(composite.intensity, list.camera.bloomIntensity);
        glActiveTexture(GL_TEXTURE1);
        glBindTexture(GL_TEXTURE_2D, finish.bloom->image().texture());
    }
    glActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, canvas.image().texture());
    glDrawArrays(GL_TRIANGLES, 0, 3);
    ++drawCalls;
}

SceneRenderer::SceneRenderer(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}
SceneRenderer::~SceneRenderer() = default;

std::unique_ptr<SceneRenderer> SceneRenderer::create(const Options& options) {
    auto parts = std::make_unique<Parts>(options);
    if (!parts->prepare()) return nullptr;
    return std::unique_ptr<SceneRenderer>(new SceneRenderer(std::move(parts)));
}

bool SceneRenderer::draw(const DrawList& list, const SceneTarget& target,
                         const SceneQuality& quality) {
    Parts& parts = *parts_;
    parts.drawCalls = 0;
    if (target.size.isEmpty() || GlContext::isCurrentLost()) return false;
    const QSize size = internalSize(target.size, quality.resolution);
    if (!parts.fit(list, size, quality)) return false;
    const double scale = target.scale * size.height() / target.size.height();
    parts.timer.begin();
    parts.drawScene(list, scale, target.size.height());
    glBindVertexArray(parts.noVertices.name());
    const bool bloom = parts.drawBloom(list, scale);
    parts.drawComposite(list, target, bloom);
    parts.timer.end();
    return true;
}

int SceneRenderer::drawCalls() const {
    return parts_->drawCalls;
}

const SceneQuality& SceneRenderer::quality() const {
    return parts_->quality;
}

std::optional<double> SceneRenderer::gpuSeconds() const {
    return parts_->timer.seconds();
}

int SceneRenderer::meshCount() const {
    return parts_->pass.meshCount();
}

int SceneRenderer::pictureCount() const {
    return parts_->pass.pictureCount();
}

}  // namespace platform
