// SPDX-License-Identifier: MIT
#include "platform/window/x11/EglOnX11.h"

#include <dlfcn.h>
#include <poll.h>

#include <array>
#include <utility>

#include "platform/render/egl/EglCalls.h"

namespace platform {

namespace {

// The Xlib functions for a driver without xcb. They are looked up by name, since only such
// a driver needs the library.
struct Xlib {
    using Handler = int (*)(void*, void*);
    using ExitHandler = void (*)(void*, void*);
    void* library = dlopen("libX11.so.6", RTLD_LAZY | RTLD_LOCAL);
    int (*initThreads)() = find<int (*)()>("XInitThreads");
    void* (*open)(const char*) = find<void* (*)(const char*)>("XOpenDisplay");
    int (*close)(void*) = find<int (*)(void*)>("XCloseDisplay");
    Handler (*onError)(Handler) = find<Handler (*)(Handler)>("XSetErrorHandler");
    void (*onExit)(void*, ExitHandler,
                   void*) = find<void (*)(void*, ExitHandler, void*)>("XSetIOErrorExitHandler");

    template <typename F>
    F find(const char* name) const {
        return library ? reinterpret_cast<F>(dlsym(library, name)) : nullptr;
    }
    [[nodiscard]] bool isComplete() const {
        return initThreads && open && close && onError && onExit;
    }
};

const Xlib& xlib() {
    static const Xlib library;
    return library;
}

std::function<bool()> connectedCheck(xcb_connection_t* connection) {
    return [connection] {
        if (xcb_connection_has_error(connection)) return false;
        pollfd socket{.fd = xcb_get_file_descriptor(connection), .events = 0, .revents = 0};
        return poll(&socket, 1, 0) == 0;
    };
}

// A window and the connection on which its errors arrive.
class WindowTarget final : public EglTarget {
  public:
    [[nodiscard]] static std::unique_ptr<EglTarget> create(const QString& display,
                                                           xcb_window_t window) {
        auto target = std::make_unique<WindowTarget>(display);
        const XConnection& connection = target->connection_;
        if (!connection.isAlive()) return nullptr;
        target->display_ = eglDisplayOn(connection.get(), connection.screenNumber());
        if (!target->display_) return nullptr;
        target->surface_ = eglSurfaceFor(target->display_, connection.get(), window);
        if (!target->surface_) return nullptr;
        return target;
    }
    explicit WindowTarget(const QString& display) : connection_(display) {}

    [[nodiscard]] const std::shared_ptr<EglDisplay>& display() const override { return display_; }
    [[nodiscard]] EglWindowSurface* lasting() const override { return surface_.get(); }
    [[nodiscard]] EglWindowSurface* begin(QSize) override { return surface_.get(); }
    bool swap(const Frame&, std::span<const QRect>) override { return surface_->swap(); }
    [[nodiscard]] Surface::Result state() override {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
            if (event->response_type != 0) continue;
            windowGone_ = windowGone_ || tellsOfNoWindow(as<xcb_generic_error_t>(*event));
        }
        if (!connection_.isAlive()) return Surface::Result::ServerGone;
        return windowGone_ ? Surface::Result::WindowGone : Surface::Result::Drawn;
    }

  private:
    // The members stand in the order of their making: each uses the earlier ones.
    XConnection connection_;
    std::shared_ptr<EglDisplay> display_;
    std::unique_ptr<EglWindowSurface> surface_;
    bool windowGone_ = false;
};

}  // namespace

std::shared_ptr<EglDisplay> eglDisplayOn(xcb_connection_t* connection, int screen) {
    if (!EglDisplay::clientOffers("EGL_EXT_platform_xcb"))
        return eglDisplayThroughXlib(connection, screen);
    const EGLint attributes[] = {EGL_PLATFORM_XCB_SCREEN_EXT, screen, EGL_NONE};
    return EglDisplay::on({.name = EGL_PLATFORM_XCB_EXT,
                           .native = connection,
                           .attributes = attributes,
                           .isConnected = connectedCheck(connection)});
}

std::shared_ptr<EglDisplay> eglDisplayThroughXlib(xcb_connection_t* connection, int screen) {
    if (!EglDisplay::clientOffers("EGL_EXT_platform_x11") || !xlib().isComplete()) return nullptr;
    xlib().initThreads();
    void* const server = xlib().open(nullptr);
    if (!server) return nullptr;
    const std::shared_ptr<void> owner(server, [](void* opened) { xlib().close(opened); });
    xlib().onError([](void*, void*) { return 0; });
    xlib().onExit(
        server, [](void*, void*) {}, nullptr);
    const EGLint attributes[] = {EGL_PLATFORM_X11_SCREEN_EXT, screen, EGL_NONE};
    return EglDisplay::on({.name = EGL_PLATFORM_X11_EXT,
                           .native = server,
                           .attributes = attributes,
                           .isConnected = connectedCheck(connection),
                           .hold = owner});
}

std::unique_ptr<EglWindowSurface> eglSurfaceFor(std::shared_ptr<EglDisplay> display,
                                                xcb_connection_t* connection, xcb_window_t window) {
    if (!display) return nullptr;
    const auto look = lookAt(connection, window);
    if (!look) return nullptr;
    void* config = EglWindowSurface::configWhere(*display, [&](const EglConfigTraits& traits) {
        return traits.visual == static_cast<int>(look->visual);
    });
    if (!config)
        config = EglWindowSurface::configWhere(
            *display, [&](const EglConfigTraits& traits) { return traits.depth == look->depth; });
    // Xlib's windows are longs, xcb's are 32 bits; the low bytes come first in both.
    unsigned long native = window;
    return EglWindowSurface::create(std::move(display), config, &native);
}

std::unique_ptr<EglTarget> eglTargetFor(const QString& display, xcb_window_t window) {
    return WindowTarget::create(display, window);
}

bool sharesGpu(const XConnection& connection) {
    constexpr std::array<std::string_view, 3> kWays{"DRI3", "DRI2", "NV-GLX"};
    return connection.offersAny(kWays);
}

}  // namespace platform
