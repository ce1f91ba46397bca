// SPDX-License-Identifier: MIT
#include <epoxy/egl.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/render/egl/Egl.h"

namespace platform {

namespace {

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

struct WindowLook {
    xcb_visualid_t visual;
    int depth;
};

std::optional<WindowLook> lookOf(xcb_connection_t* connection, xcb_window_t window) {
    const auto first = xcb_get_window_attributes(connection, window);
    const auto second = xcb_get_geometry(connection, window);
    const Reply<xcb_get_window_attributes_reply_t> attributes(
        xcb_get_window_attributes_reply(connection, first, nullptr));
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection, second, nullptr));
    if (!attributes || !geometry) return std::nullopt;
    return WindowLook{attributes->visual, geometry->depth};
}

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

int depthOf(EGLDisplay display, EGLConfig config) {
    return value(display, config, EGL_RED_SIZE) + value(display, config, EGL_GREEN_SIZE) +
           value(display, config, EGL_BLUE_SIZE) + value(display, config, EGL_ALPHA_SIZE);
}

// Picks, of the fitting configs, the one with the least besides the colours.
template <typename Fits>
EGLConfig leanest(EGLDisplay display, Fits fits) {
    EGLConfig best = nullptr;
    EGLint bestWeight = 0;
    for (EGLConfig config : windowConfigs(display)) {
        if (!fits(config)) continue;
        const EGLint weight = value(display, config, EGL_SAMPLES) * 256 +
                              value(display, config, EGL_DEPTH_SIZE) +
                              value(display, config, EGL_STENCIL_SIZE);
        if (best && weight >= bestWeight) continue;
        best = config;
        bestWeight = weight;
    }
    return best;
}

EGLConfig configFor(EGLDisplay display, const WindowLook& look) {
    const auto sameVisual = [&](EGLConfig config) {
        return value(display, config, EGL_NATIVE_VISUAL_ID) == static_cast<EGLint>(look.visual);
    };
    if (EGLConfig config = leanest(display, sameVisual)) return config;
    return leanest(display,
                   [&](EGLConfig config) { return depthOf(display, config) == look.depth; });
}

}  // namespace

std::unique_ptr<EglWindowSurface> EglWindowSurface::create(std::shared_ptr<EglDisplay> display,
                                                           std::uint32_t window) {
    if (!display || !display->connection()) return nullptr;
    const auto look = lookOf(display->connection(), window);
    if (!look) return nullptr;
    EGLConfig config = configFor(display->handle(), *look);
    if (!config) return nullptr;
    // Xlib's windows are longs, xcb's are 32 bits; the low bytes come first in both.
    unsigned long native = window;
    EGLSurface handle =
        eglCreatePlatformWindowSurfaceEXT(display->handle(), config, &native, nullptr);
    if (handle == EGL_NO_SURFACE) return nullptr;
    return std::unique_ptr<EglWindowSurface>(
        new EglWindowSurface(std::move(display), handle, config));
}

EglWindowSurface::EglWindowSurface(std::shared_ptr<EglDisplay> display, void* handle, void* config)
    : display_(std::move(display)),
      handle_(handle),
      config_(config),
      tellsAge_(display_->offers("EGL_EXT_buffer_age")) {}

EglWindowSurface::~EglWindowSurface() {
    eglDestroySurface(display_->handle(), handle_);
}

std::uint32_t EglWindowSurface::visualFor(const EglDisplay& display, int depth) {
    EGLConfig config = leanest(display.handle(), [&](EGLConfig candidate) {
        return value(display.handle(), candidate, EGL_NATIVE_VISUAL_ID) != 0 &&
               depthOf(display.handle(), candidate) == depth;
    });
    return config
               ? static_cast<std::uint32_t>(value(display.handle(), config, EGL_NATIVE_VISUAL_ID))
               : 0;
}

bool EglWindowSurface::swap() {
    // Without a server, Mesa's software renderer sends its picture for minutes,
    // in pieces of zero size.
    return display_->isConnected() && eglSwapBuffers(display_->handle(), handle_) == EGL_TRUE;
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

int EglWindowSurface::bufferAge() const {
    EGLint age = 0;
    if (tellsAge_) eglQuerySurface(display_->handle(), handle_, EGL_BUFFER_AGE_EXT, &age);
    return age;
}

}  // namespace platform
