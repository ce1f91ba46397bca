// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

// A window system's display as EGL opens it.
struct EglPlatform {
    unsigned name = 0;                // EGL_PLATFORM_…
    void* native = nullptr;           // the display in that platform's terms
    const int* attributes = nullptr;  // ended by EGL_NONE; null for none
    // Whether the window system is still at the other end; asked on any thread.
    std::function<bool()> isConnected;
    // Held until the driver let go of the display.
    std::shared_ptr<void> hold;
};

// A connection to the machine's OpenGL, through EGL. Shared by the contexts and
// surfaces made on it, which keep it alive; the driver is let go with the last.
// From any thread. Nothing here prints or ends the program: what the machine
// cannot do gives none.
class EglDisplay {
  public:
    // Needs no display server: on a GPU where there is one, else on Mesa's
    // software renderer.
    [[nodiscard]] static std::shared_ptr<EglDisplay> offscreen();

    // For windows of a window system. Its display stays the caller's and must
    // outlive everything made here, but for what `platform.hold` holds.
    [[nodiscard]] static std::shared_ptr<EglDisplay> on(EglPlatform platform);

    // Whether EGL is there at all and offers this before a display is open.
    [[nodiscard]] static bool clientOffers(const char* extension);

    ~EglDisplay();
    EglDisplay(const EglDisplay&) = delete;
    EglDisplay& operator=(const EglDisplay&) = delete;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLDisplay
    [[nodiscard]] bool offers(std::string_view extension) const;
    // Whether there are windows, and their system still is at the other end.
    [[nodiscard]] bool isConnected() const {
        return platform_.isConnected && platform_.isConnected();
    }

  private:
    EglDisplay() = default;
    [[nodiscard]] static std::shared_ptr<EglDisplay> initialize(void* handle);

    void* handle_ = nullptr;
    EglPlatform platform_;
    std::string extensions_;
};

// Traits of a config that drawing into a window asks for. A plain value.
struct EglConfigTraits {
    int visual = 0;  // the window system's number for its pixels; 0 for none
    int depth = 0;   // bits of the colours and of alpha together
    int alpha = 0;   // bits of alpha alone
};

// The surface that OpenGL draws into to show it in a window, whoever made that
// window. Belongs to the thread on which it is current. The window may vanish at any time: then
// swapping fails or shows nothing, and nothing worse happens.
class EglWindowSurface {
  public:
    // `config` is an EGLConfig of configWhere(), `native` the address of the window
    // in the platform's terms, the caller's for the length of the call. None if the
    // window is gone, has a surface already, or does not fit the config.
    [[nodiscard]] static std::unique_ptr<EglWindowSurface> create(
        std::shared_ptr<EglDisplay> display, void* config, void* native);
    ~EglWindowSurface();
    EglWindowSurface(const EglWindowSurface&) = delete;
    EglWindowSurface& operator=(const EglWindowSurface&) = delete;

    // The config that fits and carries least besides the colours; null if none.
    [[nodiscard]] static void* configWhere(const EglDisplay& display,
                                           const std::function<bool(const EglConfigTraits&)>& fits);
    [[nodiscard]] static EglConfigTraits traits(const EglDisplay& display, void* config);

    // Shows what was drawn; false if the window can no longer be drawn into, as
    // far as the driver noticed, or the window system has gone.
    // With an interval of 1 it may wait for the screen.
    bool swap();
    // Sets the vertical blanks between two pictures; 0 does not wait. The
    // surface must be current.
    bool setSwapInterval(int interval);
    // Pixels, as of the last swap. A driver may learn of a new size later than the
    // window's owner does.
    [[nodiscard]] QSize size() const;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLSurface
    [[nodiscard]] void* config() const { return config_; }  // EGLConfig

  private:
    EglWindowSurface(std::shared_ptr<EglDisplay> display, void* handle, void* config);

    std::shared_ptr<EglDisplay> display_;
    void* handle_;
    void* config_;
};

// Replaces glGetGraphicsResetStatus() in tests of a lost GPU.
using ResetQuery = std::function<unsigned()>;

// An OpenGL 3.3 context, core profile, that keeps its display. Current on at most
// one thread at a time. Every OpenGL object made in it must be dropped while it is
// current; the context itself, while current there or current nowhere.
class GlContext {
  public:
    // Fits `surface` where the driver needs that. A context without a surface
    // can draw off screen on every driver, and to windows on nearly all.
    // `resetStatus`, if given, replaces the driver's answer.
    [[nodiscard]] static std::unique_ptr<GlContext> create(
        std::shared_ptr<EglDisplay> display, const EglWindowSurface* surface = nullptr,
        ResetQuery resetStatus = {});
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    // False, with nothing changed, if the driver refuses.
    bool makeCurrent();
    bool makeCurrent(const EglWindowSurface& surface);
    void doneCurrent();

    // Whether a GPU reset lost the context with all its objects: nothing can be
    // drawn any more, and another context is needed. The context must be
    // current. Always false where the driver does not report resets.
    [[nodiscard]] bool isLost();
    // The same for this thread's current context; false without one.
    [[nodiscard]] static bool isCurrentLost();

    // The driver's name for itself; empty until the context was first
    // current.
    [[nodiscard]] const std::string& rendererName() const { return rendererName_; }
    // Whether the CPU draws; see isSoftwareRenderer().
    [[nodiscard]] bool isSoftware() const;

    // The driver's largest picture, in pixels; a context must be current.
    [[nodiscard]] static QSize largestPicture();

    // The number of errors that OpenGL has reported, each with a line on
    // standard error. Strict builds (BRIXTEL_STRICT) only, else 0.
    [[nodiscard]] int errors() const { return errors_; }

  private:
    GlContext(std::shared_ptr<EglDisplay> display, void* handle, ResetQuery resetStatus);
    bool bind(void* surface);
    void firstTime();

    std::shared_ptr<EglDisplay> display_;
    void* handle_;
    ResetQuery resetStatus_;  // empty where the driver does not tell
    bool lost_ = false;
    std::string rendererName_;
    int errors_ = 0;
};

// Whether a renderer of this name (GL_RENDERER) draws on the CPU: Mesa's
// llvmpipe and softpipe, its older "Software Rasterizer" and swr, and
// SwiftShader. Virtual machines' renderers that use the host's GPU (virgl,
// SVGA3D) do not count.
[[nodiscard]] bool isSoftwareRenderer(std::string_view name);

}  // namespace platform
