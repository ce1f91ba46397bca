// SPDX-License-Identifier: MIT
#include "platform/render/gl/SceneBloom.h"

#include <glm/gtc/type_ptr.hpp>
#include <utility>

#include "blur.frag.h"
#include "bright.frag.h"
#include "halve.frag.h"
#include "platform/render/gl/ScenePrograms.h"
#include "post.vert.h"

namespace platform {

namespace {

void drawAll(const GlImage& from, const GlImage& to) {
    to.target();
    glBindTexture(GL_TEXTURE_2D, from.texture());
    glDrawArrays(GL_TRIANGLES, 0, 3);
}

glm::vec2 sizeOf(const GlImage& image) {
    return {image.size().width(), image.size().height()};
}

}  // namespace

std::unique_ptr<SceneBloom> SceneBloom::create() {
    Programs made{};
    made.bright = makeProgram("bright", "", kPostVert, kBrightFrag);
    made.halve = makeProgram("halve", "", kPostVert, kHalveFrag);
    made.blur = makeProgram("blur", "", kPostVert, kBlurFrag);
    if (!made.bright || !made.halve || !made.blur) return nullptr;
    made.factor = made.bright->uniform("factor");
    made.threshold = made.bright->uniform("threshold");
    made.inputScale = made.bright->uniform("inputScale");
    made.texel = made.halve->uniform("texel");
    made.direction = made.blur->uniform("direction");
    made.taps = made.blur->uniform("taps");
    made.middle = made.blur->uniform("middle");
    made.tap = made.blur->uniform("tap");
    return std::unique_ptr<SceneBloom>(new SceneBloom(std::move(made)));
}

SceneBloom::SceneBloom(Programs programs) : programs_(std::move(programs)) {}

bool SceneBloom::fit(QSize scene, const Options& options) {
    if (planned_.size != scene || planned_.sigma != options.sigma ||
        planned_.fine != options.fine) {
        planned_ = {scene, options.sigma, options.fine};
        plan_ = planBloom(planned_);
        images_.resize(static_cast<std::size_t>(plan_.halvings) + 2);
    }
    int reduction = plan_.factor;
    for (int i = 0; i <= plan_.halvings; ++i, reduction *= 2) {
        const QSize size = BloomPlan::reduced(scene, reduction);
        if (!images_[static_cast<std::size_t>(i)].fit(size, options.format)) return false;
    }
    covered_ = glm::vec2(scene.width(), scene.height()) /
               (static_cast<float>(plan_.reduction()) * sizeOf(image()));
    return images_.back().fit(plan_.size, options.format);
}

int SceneBloom::draw(const GlImage& scene, const Options& options) {
    if (!fit(scene.size(), options)) return 0;
    glActiveTexture(GL_TEXTURE0);
    programs_.bright->use();
    glUniform1i(programs_.factor, plan_.factor);
    glUniform1f(programs_.threshold, options.threshold);
    glUniform1f(programs_.inputScale, options.inputScale);
    drawAll(scene, images_.front());
    programs_.halve->use();
    for (std::size_t i = 0; i + 2 < images_.size(); ++i) {
        const glm::vec2 texel = 1.0F / sizeOf(images_[i]);
        glUniform2fv(programs_.texel, 1, glm::value_ptr(texel));
        drawAll(images_[i], images_[i + 1]);
    }
    programs_.blur->use();
    glUniform1i(programs_.taps, plan_.taps);
    glUniform1f(programs_.middle, plan_.weight[0]);
    glUniform2fv(programs_.tap, plan_.taps, glm::value_ptr(plan_.tap[0]));
    const glm::vec2 pixel = 1.0F / sizeOf(image());
    blur(image(), images_.back(), {pixel.x, 0.0F});
    blur(images_.back(), image(), {0.0F, pixel.y});
    return 3 + plan_.halvings;
}

void SceneBloom::blur(const GlImage& from, const GlImage& to, glm::vec2 direction) const {
    glUniform2fv(programs_.direction, 1, glm::value_ptr(direction));
    drawAll(from, to);
}

}  // namespace platform
