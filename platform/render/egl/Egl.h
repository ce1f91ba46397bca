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

// A connection to the machine's OpenGL, through EGL. Shared by the contexts and
// surfaces made on it, which keep it alive; the driver is let go with the last.
// From any thread. Nothing here prints or ends the program: what the machine
// cannot do gives none.
class EglDisplay {
  public:
    // Without any display server: on a GPU where there is one, else on Mesa's
    // software renderer.
    [[nodiscard]] static std::shared_ptr<EglDisplay> offscreen();

    // For windows of this X server. The connection stays the caller's and must
    // outlive everything made here.
    [[nodiscard]] static std::shared_ptr<EglDisplay> forX11(xcb_connection_t* connection,
                                                            int screen);

    // The same for drivers that know no xcb: a connection of Xlib's own, to the
    // server that the environment names. forX11() comes here by itself. Xlib's
    // process-wide error handler is replaced by one that ignores, since the
    // usual one ends the program when a window has gone.
    [[nodiscard]] static std::shared_ptr<EglDisplay> throughXlib(xcb_connection_t* connection,
                                                                 int screen);

    ~EglDisplay();
    EglDisplay(const EglDisplay&) = delete;
    EglDisplay& operator=(const EglDisplay&) = delete;

    [[nodiscard]] void* handle() const { return handle_; }  // EGLDisplay
    [[nodiscard]] bool offers(std::string_view extension) const;
    // Null where there are no windows.
    [[nodiscard]] xcb_connection_t* connection() const { return connection_; }
    // Whether the X server is still at the other end.
    [[nodiscard]] bool isConnected() const;

  private:
    EglDisplay() = default;
    [[nodiscard]] static std::shared_ptr<EglDisplay> initialize(void* handle);

    void* handle_ = nullptr;
    xcb_connection_t* connection_ = nullptr;
    std::shared_ptr<void> xlib_;  // Xlib's own connection, closed after the driver let go
    std::string extensions_;
};

// What OpenGL draws into to show it in an X window, whoever made that window.
// Belongs to the thread on which it is current. The window may vanish at any
// time: then swapping fails or shows nothing, and nothing worse happens. The X
// errors of that arrive on the display's connection, as events for its owner.
class EglWindowSurface {
  public:
    // None if the window is gone, has a surface already, or is of a visual that
    // the driver cannot draw into (then it must be made in a visual of a
    // config's, see visualFor()).
    [[nodiscard]] static std::unique_ptr<EglWindowSurface> create(
        std::shared_ptr<EglDisplay> display, std::uint32_t window);
    ~EglWindowSurface();
    EglWindowSurface(const EglWindowSurface&) = delete;
    EglWindowSurface& operator=(const EglWindowSurface&) = delete;

    // A visual of this depth (24 or 32) that the driver draws into; 0 if none.
    [[nodiscard]] static std::uint32_t visualFor(const EglDisplay& display, int depth);

    // Shows what was drawn; false if the window can no longer be drawn into, as
    // far as the driver noticed, or the X server has gone.
    // With an interval of 1 it may wait for the screen.
    bool swap();
    // Vertical blanks between two pictures; 0 does not wait. The surface must be
    // current.
    bool setSwapInterval(int interval);
    // Pixels, as of the last swap. Mesa learns of a new size from the server at
    // the first drawing after it; the window's owner, from ConfigureNotify.
    [[nodiscard]] QSize size() const;
    // How many swaps ago the picture now in the back buffer was shown; 0 when it
    // cannot be told. The surface must be current.
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

// Says what glGetGraphicsResetStatus() would; for trying what a lost GPU brings.
using ResetQuery = std::function<unsigned()>;

// OpenGL 3.3, core profile. Current on at most one thread at a time; every
// OpenGL object made in it must be dropped while it is current, and the context
// itself where it is current or current nowhere.
class GlContext {
  public:
    // Made to fit `surface` where the driver needs to know; a context without
    // one can draw off screen on every driver, and to windows on nearly all.
    // `resetStatus`, if given, is asked in the driver's place.
    [[nodiscard]] static std::unique_ptr<GlContext> create(
        std::shared_ptr<EglDisplay> display, const EglWindowSurface* surface = nullptr,
        ResetQuery resetStatus = {});
    ~GlContext();
    GlContext(const GlContext&) = delete;
    GlContext& operator=(const GlContext&) = delete;

    // False if the driver refuses; then nothing has changed.
    bool makeCurrent();
    bool makeCurrent(const EglWindowSurface& surface);
    void doneCurrent();

    // Whether the GPU was reset, and all that was made here is lost with it: then
    // nothing can be drawn any more, and another context is needed. It must be
    // current. Never true where the driver does not tell.
    [[nodiscard]] bool isLost();
    // The same of the one that is current on this thread, if any is.
    [[nodiscard]] static bool isCurrentLost();

    // As the driver names it; empty until the context was current for the first
    // time.
    [[nodiscard]] const std::string& rendererName() const { return rendererName_; }
    // Whether the CPU does the drawing; see isSoftwareRenderer().
    [[nodiscard]] bool isSoftware() const;

    // The most that it can draw at once, in pixels; it must be current.
    [[nodiscard]] static QSize largestPicture();

    // How many errors OpenGL has reported, each with a line on standard error.
    // Counted in strict builds only (BRIXTEL_STRICT), else 0.
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
// llvmpipe and softpipe, its older "Software Rasterizer" and swr, and SwiftShader.
// Renderers of virtual machines that hand the work to the host's GPU (virgl,
// SVGA3D) are none of these.
[[nodiscard]] bool isSoftwareRenderer(std::string_view name);

}  // namespace platform
