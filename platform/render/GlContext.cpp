// SPDX-License-Identifier: MIT
#include <epoxy/egl.h>
#include <epoxy/gl.h>

#include <cstdio>
#include <utility>

#include "platform/render/Egl.h"

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

}  // namespace

bool isSoftwareRenderer(std::string_view name) {
    for (const std::string_view software :
         {"llvmpipe", "softpipe", "swrast", "Software Rasterizer", "SWR", "SwiftShader"}) {
        if (name.find(software) != std::string_view::npos) return true;
    }
    return false;
}

std::unique_ptr<GlContext> GlContext::create(std::shared_ptr<EglDisplay> display,
                                             const EglWindowSurface* surface) {
    if (!display || !display->offers("EGL_KHR_surfaceless_context") || !eglBindAPI(EGL_OPENGL_API))
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
    const EGLint attributes[] = {EGL_CONTEXT_MAJOR_VERSION_KHR,
                                 3,
                                 EGL_CONTEXT_MINOR_VERSION_KHR,
                                 3,
                                 EGL_CONTEXT_OPENGL_PROFILE_MASK_KHR,
                                 EGL_CONTEXT_OPENGL_CORE_PROFILE_BIT_KHR,
                                 EGL_CONTEXT_FLAGS_KHR,
                                 kStrict ? EGL_CONTEXT_OPENGL_DEBUG_BIT_KHR : 0,
                                 EGL_NONE};
    EGLContext handle = eglCreateContext(display->handle(), config, EGL_NO_CONTEXT, attributes);
    if (handle == EGL_NO_CONTEXT) return nullptr;
    return std::unique_ptr<GlContext>(new GlContext(std::move(display), handle));
}

GlContext::GlContext(std::shared_ptr<EglDisplay> display, void* handle)
    : display_(std::move(display)), handle_(handle) {}

GlContext::~GlContext() {
    if (eglGetCurrentContext() == handle_) doneCurrent();
    eglDestroyContext(display_->handle(), handle_);
}

bool GlContext::makeCurrent() {
    return bind(EGL_NO_SURFACE);
}

bool GlContext::makeCurrent(const EglWindowSurface& surface) {
    return bind(surface.handle());
}

bool GlContext::bind(void* surface) {
    // Which API is meant is a thread's own state.
    if (!eglBindAPI(EGL_OPENGL_API) ||
        !eglMakeCurrent(display_->handle(), surface, surface, handle_))
        return false;
    if (rendererName_.empty()) firstTime();
    return true;
}

void GlContext::doneCurrent() {
    eglMakeCurrent(display_->handle(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
}

void GlContext::firstTime() {
    const auto* const name = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
    rendererName_ = name ? name : "unknown";
    if (!kStrict || !epoxy_has_gl_extension("GL_KHR_debug")) return;
    glEnable(GL_DEBUG_OUTPUT);
    glEnable(GL_DEBUG_OUTPUT_SYNCHRONOUS);
    glDebugMessageCallback(countError, &errors_);
}

bool GlContext::isSoftware() const {
    return isSoftwareRenderer(rendererName_);
}

}  // namespace platform
