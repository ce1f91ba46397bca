// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct xcb_connection_t;

namespace platform {

// A connection to the machine's OpenGL, through EGL. Contexts and
// surfaces share ownership of it; the last owner lets the driver go.
// Any thread. Nothing here prints or ends the program: a failure gives
// null.
class EglDisplay {
  public:
    // Needs no display server: on a GPU where there is one, else on Mesa's
    // software renderer.
    [[nodiscard]] static std::shared_ptr<EglDisplay> offscreen();

    // Opens OpenGL for windows of this X server. The caller owns the
    // connection, which must outlive everything made here.
    [[nodiscard]] static std::shared_ptr<EglDisplay> forX11(xcb_connection_t* connection,
                                                            int screen);

    // Does the same for drivers without xcb: over a connection of Xlib's own,
    // to the server that the environment names. forX11() falls back to this.
    // Replaces Xlib's process-wide error handler with one that ignores errors,
    // since the default handler ends the program when a window has gone.
    [[nodiscard]] static std::shared_ptr<EglDisplay> throughXlib(xcb_connection_t* connection,
                                                                 int screen);

    ~EglDisplay();
    EglDisplay(const EglDisplay&) = delete;
    EglDisplay& operator=(const EglDisplay&) = delete;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLDisplay
    [[nodiscard]] bool offers(std::string_view extension) const;
    // Null for an off-screen display.
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
    // Whether the connection to the X server still works.
    [[nodiscard]] bool isConnected() const;

  private:
    EglDisplay() = default;
    [[nodiscard]] static std::shared_ptr<EglDisplay> initialize(void* handle);

    void* handle_ = nullptr;
    xcb_connection_t* connection_ = nullptr;
    std::shared_ptr<void> xlib_;  // Xlib's own connection, closed after the driver let go
    std::string extensions_;
};

// A surface that shows OpenGL's drawing in an X window, which another object owns.
// Belongs to the thread on which the surface is current. The window may vanish at
// any time: swapping then fails or shows nothing, without further harm. The X
// errors arrive on the display's connection, as events for its owner.
class EglWindowSurface {
  public:
    // Null if the window is gone, has a surface already, or has a visual that
    // the driver cannot draw into (make the window in the visual of a config
    // then, see visualFor()).
    [[nodiscard]] static std::unique_ptr<EglWindowSurface> create(
        std::shared_ptr<EglDisplay> display, std::uint32_t window);
    ~EglWindowSurface();
    EglWindowSurface(const EglWindowSurface&) = delete;
    EglWindowSurface& operator=(const EglWindowSurface&) = delete;

    // A visual of this depth (24 or 32) that the driver draws into; 0 if none.
    [[nodiscard]] static std::uint32_t visualFor(const EglDisplay& display, int depth);

    // Shows the drawing; false if the X server has gone, or the driver
    // noticed that the window has. With an interval of 1, may wait for the
    // screen.
    bool swap();
    // Sets the vertical blanks between two pictures; 0 does not wait. The
    // surface must be current.
    bool setSwapInterval(int interval);
    // Pixels, as of the last swap. Mesa learns of a new size from the server at
    // the next drawing; the window's owner learns from ConfigureNotify.
    [[nodiscard]] QSize size() const;
    // The number of swaps since the picture in the back buffer was shown; 0 if
    // unknown. The surface must be current.
    [[nodiscard]] int bufferAge() const;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLSurface
    [[nodiscard]] void* config() const { return config_; }  // EGLConfig

  private:
    EglWindowSurface(std::shared_ptr<EglDisplay> display, void* handle, void* config);

    std::shared_ptr<EglDisplay> display_;
    void* handle_;
    void* config_;
    bool tellsAge_;
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
