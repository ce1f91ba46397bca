// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QSize>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// A window system's display as EGL opens it.
struct EglPlatform {
    unsigned name = 0;                // EGL_PLATFORM_…
    void* native = nullptr;           // the display in that platform's terms
    const int* attributes = nullptr;  // ended by EGL_NONE; null for none
    // Whether the window system still answers; called on any thread.
    std::function<bool()> isConnected;
    // Kept until the driver has closed the display.
    std::shared_ptr<void> hold;
};

// A connection to the machine's OpenGL, through EGL. The contexts and surfaces made on it
// share it; the last holder's end closes the driver's display. Any thread. The functions
// print nothing and never end the program; a missing ability gives
// null.
class EglDisplay {
  public:
    // An off-screen connection, without a display server: on a GPU if there is one, else on
    // Mesa's software renderer.
    [[nodiscard]] static std::shared_ptr<EglDisplay> offscreen();

    // A connection for windows. The caller owns the native display, and keeps it alive longer
    // than everything made on it, unless `platform.hold` does.
    [[nodiscard]] static std::shared_ptr<EglDisplay> on(EglPlatform platform);

    // Whether EGL exists and offers this extension before a display is open.
    [[nodiscard]] static bool clientOffers(const char* extension);

    ~EglDisplay();
    EglDisplay(const EglDisplay&) = delete;
    EglDisplay& operator=(const EglDisplay&) = delete;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLDisplay
    [[nodiscard]] bool offers(std::string_view extension) const;
    // Whether this connection shows windows, and their window system still answers.
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

// The traits by which a window's config is chosen. A plain value; any thread.
struct EglConfigTraits {
    int visual = 0;  // the window system's number for its pixels; 0 for none
    int depth = 0;   // bits of the colours and of alpha together
    int alpha = 0;   // bits of alpha alone
};

// The surface through which OpenGL draws in a window of any maker. Its owner uses it on the thread
// on which it is current, and may drop it on any thread while it is current nowhere. The window may
// vanish at any time: swapping then fails or shows nothing, and nothing worse happens.
class EglWindowSurface {
  public:
    // `config` is an EGLConfig of configWhere(). `native` is the platform's window as
    // eglCreatePlatformWindowSurface() takes one; the caller keeps it as the platform wants. Null
    // if the window is gone, has a surface already, or does not fit the config.
    [[nodiscard]] static std::unique_ptr<EglWindowSurface> create(
        std::shared_ptr<EglDisplay> display, void* config, void* native);
    ~EglWindowSurface();
    EglWindowSurface(const EglWindowSurface&) = delete;
    EglWindowSurface& operator=(const EglWindowSurface&) = delete;

    // The fitting config with the fewest buffers besides the colours; null if none fits.
    [[nodiscard]] static void* configWhere(const EglDisplay& display,
                                           const std::function<bool(const EglConfigTraits&)>& fits);
    [[nodiscard]] static EglConfigTraits traits(const EglDisplay& display, void* config);

    // Shows the drawn picture. False if the window system is gone, or the driver noticed that
    // the window can no longer be drawn into. May wait for the screen with an
    // interval of 1.
    bool swap();
    // The same for a picture that differs from the last one within the boxes, in pixels, y
    // down.
    bool swap(std::span<const QRect> boxes);
    // Sets the vertical blanks between two pictures; 0 does not wait. The
    // surface must be current.
    bool setSwapInterval(int interval);
    // The size in pixels at the last swap. A driver may learn of a new size later than the
    // window's owner.
    [[nodiscard]] QSize size() const;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLSurface
    [[nodiscard]] void* config() const { return config_; }  // EGLConfig

  private:
    EglWindowSurface(std::shared_ptr<EglDisplay> display, void* handle, void* config);

    std::shared_ptr<EglDisplay> display_;
    void* handle_;
    void* config_;
    std::vector<int> boxes_;
};

// Replaces glGetGraphicsResetStatus() in tests of a lost GPU.
using ResetQuery = std::function<unsigned()>;

// An OpenGL 3.3 context, core profile, that shares its display. Current on at most one
// thread at a time. Its objects are dropped while it is current. The context is dropped on
// the thread on which it is current, or while it is current nowhere.
class GlContext {
  public:
    // Makes a context that fits `surface`, where the driver needs that. A context made without a
    // surface draws off screen on every driver, and in windows on nearly all.
    // `resetStatus`, if given, replaces the driver's answer. Null without OpenGL 3.3.
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

    // The driver's name for its renderer; empty before the context was first
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
    ResetQuery resetStatus_;  // empty where the driver does not report resets
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
