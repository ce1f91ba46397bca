// SPDX-License-Identifier: MIT
#include <algorithm>
#include <array>
#include <cstdio>
#include <initializer_list>
#include <utility>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglCalls.h"
#include "platform/render/gl/GlCalls.h"

namespace platform {

namespace {

#ifdef BRIXTEL_STRICT
constexpr bool kStrict = true;
#else
constexpr bool kStrict = false;
#endif

void countError(GLenum, GLenum type, GLuint, GLenum, GLsizei, const GLchar* text,
                const void* errors) {
    if (type != GL_DEBUG_TYPE_ERROR) return;
    std::fprintf(stderr, "OpenGL: %s\n", text);
    ++*static_cast<int*>(const_cast<void*>(errors));
}

thread_local GlContext* currentContext = nullptr;

// Makes a context that reports GPU resets, where possible. The attribute's name
// depends on the driver, and some drivers refuse a name that they know.
EGLContext createHandle(const EglDisplay& display, EGLConfig config) {
    const std::vector<EGLint> plain{EGL_CONTEXT_MAJOR_VERSION_KHR,
                                    3,
                                    EGL_CONTEXT_MINOR_VERSION_KHR,
                                    3,
                                    EGL_CONTEXT_OPENGL_PROFILE_MASK_KHR,
                                    EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT_KHR,
                                    EGL_CONTEXT_FLAGS_KHR,
                                    kStrict ? EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR : 0};
    const auto tryWith = [&](std::initializer_list<EGLint> more) {
        std::vector<EGLint> attributes = plain;
        attributes.insert(attributes.end(), more);
        attributes.push_back(EGL_NONE);
        return eglCreateContext(display.handle(), config, EGL_NO_CONTEXT, attributes.data());
    };
    EGLContext handle = tryWith(
        {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_KHR, EGL_LOSE_CONTEXT_ON_RESET_KHR});
    if (handle == EGL_NO_CONTEXT && display.offers("EGL_EXT_create_context_robustness"))
        handle = tryWith(
            {EGL_CONTEXT_OPENGL_RESET_NOTIFICATION_STRATEGY_EXT, EGL_LOSE_CONTEXT_ON_RESET_EXT});
    return handle != EGL_NO_CONTEXT ? handle : tryWith({});
}

// The current context's version of OpenGL, as 45 for 4.5.
int version() {
    GLint major = 0, minor = 0;
    glGetIntegerv(GL_MAJOR_VERSION, &major);
    glGetIntegerv(GL_MINOR_VERSION, &minor);
    return 10 * major + minor;
}

// Null where the driver has no such call.
ResetQuery driversResetQuery() {
    if (glOffers("GL_KHR_robustness") || version() >= 45)
        return [] { return glGetGraphicsResetStatus(); };
    if (glOffers("GL_ARB_robustness")) return [] { return glGetGraphicsResetStatusARB(); };
    return {};
}

}  // namespace

bool isSoftwareRenderer(std::string_view name) {
    for (const std::string_view software :
         {"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SWR", "SwiftShader"}) {
        if (name.find(software) != std::string_view::npos) return true;
    }
    return false;
}

std::unique_ptr<GlContext> GlContext::create(std::shared_ptr<EglDisplay> display,
                                             const EglWindowSurface* surface,
                                             ResetQuery resetStatus) {
    if (!display || !display->offers("EGL_KHR_surfaceless_context") ||
        !eglBindAPI(EGL_OPENGL_API) || !loadGl())
        return nullptr;
    EGLConfig config = nullptr;  // EGL_NO_CONFIG_KHR
    if (!display->offers("EGL_KHR_no_config_context")) {
        const EGLint wanted[] = {EGL_RENDERABLE_TYPE, EGL_OPENGL_BIT, EGL_SURFACE_TYPE, 0,
                                 EGL_NONE};
        EGLint count = 0;
        if (surface) {
            config = surface->config();
        } else if (!eglChooseConfig(display->handle(), wanted, &config, 1, &count) || count < 1) {
            return nullptr;
        }
    }
    EGLContext handle = createHandle(*display, config);
    if (handle == EGL_NO_CONTEXT) return nullptr;
    return std::unique_ptr<GlContext>(
        new GlContext(std::move(display), handle, std::move(resetStatus)));
}

GlContext::GlContext(std::shared_ptr<EglDisplay> display, void* handle, ResetQuery resetStatus)
    : display_(std::move(display)), handle_(handle), resetStatus_(std::move(resetStatus)) {}

GlContext::~GlContext() {
    if (eglGetCurrentContext() == handle_) doneCurrent();
    eglDestroyContext(display_->handle(), handle_);
}

bool GlContext::makeCurrent() {
    return bind(EGL_NO_SURFACE);
}

bool GlContext::makeCurrent(const EglWindowSurface& surface) {
    if (!bind(surface.handle())) return false;
    // A context that was current without a surface first draws into no buffer, or (Mesa 22.3)
    // into the front one.
    glBindFramebuffer(GL_FRAMEBUFFER, 0);
    glDrawBuffer(GL_BACK);
    glReadBuffer(GL_BACK);
    return true;
}

bool GlContext::bind(void* surface) {
    // The bound API is state of each thread.
    if (!eglBindAPI(EGL_OPENGL_API) ||
        !eglMakeCurrent(display_->handle(), surface, surface, handle_))
        return false;
    currentContext = this;
    if (rendererName_.empty()) firstTime();
    return true;
}

void GlContext::doneCurrent() {
    eglMakeCurrent(display_->handle(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    currentContext = nullptr;
}

bool GlContext::isLost() {
    // The driver reports a reset only once.
    lost_ = lost_ || (resetStatus_ && resetStatus_() != GL_NO_ERROR);
    return lost_;
}

bool GlContext::isCurrentLost() {
    return currentContext && currentContext->isLost();
}

void GlContext::firstTime() {
    const auto* const name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    rendererName_ = name ? name : "unknown";
    if (!resetStatus_) resetStatus_ = driversResetQuery();
    if (!kStrict || !glOffers("GL_KHR_debug")) return;
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glDebugMessageCallback(countError, &errors_);
}

QSize GlContext::largestPicture() {
    std::array<GLint, 2> view{};
    GLint texture = 0, buffer = 0;
    glGetIntegerv(GL_MAX_VIEWPORT_DIMS, view.data());
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &texture);
    glGetIntegerv(GL_MAX_RENDERBUFFER_SIZE, &buffer);
    const int side = std::min(texture, buffer);
    return {std::min(view[0], side), std::min(view[1], side)};
}

bool GlContext::isSoftware() const {
    return isSoftwareRenderer(rendererName_);
}

}  // namespace platform
