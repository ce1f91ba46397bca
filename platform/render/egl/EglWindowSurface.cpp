// SPDX-License-Identifier: MIT
#include <memory>
#include <utility>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglCalls.h"

namespace platform {

namespace {

std::vector<EGLConfig> windowConfigs(EGLDisplay display) {
    const EGLint wanted[] = {EGL_SURFACE_TYPE, EGL_WINDOW_BIT, EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT,
                             EGL_NONE};
    EGLint count = 0;
    if (!eglChooseConfig(display, wanted, nullptr, 0, &count) || count <= 0) return {};
    std::vector<EGLConfig> configs(static_cast<std::size_t>(count));
    if (!eglChooseConfig(display, wanted, configs.data(), count, &count)) return {};
    configs.resize(static_cast<std::size_t>(count));
    return configs;
}

EGLint value(EGLDisplay display, EGLConfig config, EGLint name) {
    EGLint result = 0;
    eglGetConfigAttrib(display, config, name, &result);
    return result;
}

}  // namespace

EglConfigTraits EglWindowSurface::traits(const EglDisplay& display, void* config) {
    EGLDisplay handle = display.handle();
    const int alpha = value(handle, config, EGL_ALPHA_SIZE);
    return {.visual = value(handle, config, EGL_NATIVE_VISUAL_ID),
            .depth = value(handle, config, EGL_RED_SIZE) + value(handle, config, EGL_GREEN_SIZE) +
                     value(handle, config, EGL_BLUE_SIZE) + alpha,
            .alpha = alpha};
}

void* EglWindowSurface::configWhere(const EglDisplay& display,
                                    const std::function<bool(const EglConfigTraits&)>& fits) {
    EGLConfig best = nullptr;
    EGLint bestWeight = 0;
    for (EGLConfig config : windowConfigs(display.handle())) {
        if (!fits(traits(display, config))) continue;
        const EGLint weight = value(display.handle(), config, EGL_SAMPLES) * 256 +
                              value(display.handle(), config, EGL_DEPTH_SIZE) +
                              value(display.handle(), config, EGL_STENCIL_SIZE);
        if (best && weight >= bestWeight) continue;
        best = config;
        bestWeight = weight;
    }
    return best;
}

std::unique_ptr<EglWindowSurface> EglWindowSurface::create(std::shared_ptr<EglDisplay> display,
                                                           void* config, void* native) {
    if (!display || !config) return nullptr;
    EGLSurface handle =
        eglCreatePlatformWindowSurfaceEXT(display->handle(), config, native, nullptr);
    if (handle == EGL_NO_SURFACE) return nullptr;
    return std::unique_ptr<EglWindowSurface>(
        new EglWindowSurface(std::move(display), handle, config));
}

EglWindowSurface::EglWindowSurface(std::shared_ptr<EglDisplay> display, void* handle, void* config)
    : display_(std::move(display)), handle_(handle), config_(config) {}

EglWindowSurface::~EglWindowSurface() {
    eglDestroySurface(display_->handle(), handle_);
}

bool EglWindowSurface::swap() {
    // Without a window system Mesa's software renderer sends its picture for minutes, in
    // pieces of no size.
    return display_->isConnected() && eglSwapBuffers(display_->handle(), handle_) == EGL_TRUE;
}

bool EglWindowSurface::swap(std::span<const QRect> boxes) {
    const bool khr = display_->offers("EGL_KHR_swap_buffers_with_damage");
    if (boxes.empty() || !(khr || display_->offers("EGL_EXT_swap_buffers_with_damage")))
        return swap();
    if (!display_->isConnected()) return false;
    const int height = size().height();
    boxes_.clear();
    for (const QRect& box : boxes)
        boxes_.insert(boxes_.end(),
                      {box.x(), height - box.y() - box.height(), box.width(), box.height()});
    const auto count = static_cast<EGLint>(boxes.size());
    return (khr ? eglSwapBuffersWithDamageKHR(display_->handle(), handle_, boxes_.data(), count)
                : eglSwapBuffersWithDamageEXT(display_->handle(), handle_, boxes_.data(), count)) ==
           EGL_TRUE;
}

bool EglWindowSurface::setSwapInterval(int interval) {
    return eglSwapInterval(display_->handle(), interval) == EGL_TRUE;
}

QSize EglWindowSurface::size() const {
    EGLint width = 0, height = 0;
    eglQuerySurface(display_->handle(), handle_, EGL_WIDTH, &width);
    eglQuerySurface(display_->handle(), handle_, EGL_HEIGHT, &height);
    return {width, height};
}

}  // namespace platform
