// SPDX-License-Identifier: MIT
#include <dlfcn.h>
#include <epoxy/egl.h>
#include <poll.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <map>
#include <mutex>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglDevices.h"

namespace platform {

namespace {

// From EGL_EXT_platform_xcb; epoxy 1.5.10 lacks the constant.
constexpr EGLenum kPlatformXcb = 0x31DC;
constexpr EGLint kPlatformXcbScreen = 0x31DE;

// Counts openings: a driver gives one display per connection however often it
// is asked, and shutting the display down does so for every user.
class Openings {
  public:
    static Openings& shared() {
        static Openings openings;
        return openings;
    }

    bool open(EGLDisplay display) {
        const std::scoped_lock lock(mutex_);
        EGLint major = 0, minor = 0;
        if (!eglInitialize(display, &major, &minor)) return false;
        ++counts_[display];
        return true;
    }

    void close(EGLDisplay display) {
        const std::scoped_lock lock(mutex_);
        const auto found = counts_.find(display);
        if (--found->second > 0) return;
        counts_.erase(found);
        eglTerminate(display);
    }

  private:
    std::mutex mutex_;
    std::map<EGLDisplay, int> counts_;
};

// The few Xlib calls needed for a driver without xcb. Looked up by name, since
// no other machine needs the library.
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

bool isEglPresent() {
    // Epoxy ends the program where the library is missing.
    static const bool present = dlopen("libEGL.so.1", RTLD_LAZY | RTLD_LOCAL) != nullptr;
    return present;
}

}  // namespace

bool eglClientOffers(const char* extension) {
    if (!isEglPresent()) return false;
    const char* const all = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return all && epoxy_extension_in_string(all, extension);
}

std::vector<EglDevice> eglDevices() {
    const bool listed =
        eglClientOffers("EGL_EXT_device_enumeration") && eglClientOffers("EGL_EXT_device_query");
    if (!listed && !eglClientOffers("EGL_EXT_device_base")) return {};
    EGLint count = 0;
    if (!eglQueryDevicesEXT(0, nullptr, &count) || count <= 0) return {};
    std::vector<EGLDeviceEXT> handles(static_cast<std::size_t>(count));
    if (!eglQueryDevicesEXT(count, handles.data(), &count)) return {};
    std::vector<EglDevice> devices;
    for (EGLDeviceEXT handle : handles) {
        const char* const all = eglQueryDeviceStringEXT(handle, EGL_EXTENSIONS);
        const bool software = all && epoxy_extension_in_string(all, "EGL_MESA_device_software");
        devices.push_back({.handle = handle, .software = software});
    }
    return devices;
}

bool isSoftwareForced() {
    // The value is read by Mesa's own rule.
    const char* const value = std::getenv("LIBGL_ALWAYS_SOFTWARE");
    if (!value) return false;
    const std::string_view word(value);
    return word == "1" || word == "true" || word == "yes" || word == "y" || word == "on" ||
           word == "t";
}

std::shared_ptr<EglDisplay> EglDisplay::initialize(void* handle) {
    if (handle == EGL_NO_DISPLAY || !Openings::shared().open(handle)) return nullptr;
    std::shared_ptr<EglDisplay> display(new EglDisplay);
    display->handle_ = handle;
    const char* const extensions = eglQueryString(handle, EGL_EXTENSIONS);
    display->extensions_ = extensions ? extensions : "";
    return display;
}

EglDisplay::~EglDisplay() {
    if (handle_) Openings::shared().close(handle_);
}

std::shared_ptr<EglDisplay> EglDisplay::offscreen() {
    if (!eglClientOffers("EGL_EXT_platform_base")) return nullptr;
    // Devices come first: without a platform, a machine with a GPU's own driver
    // beside Mesa gives Mesa's software renderer.
    const bool devices = eglClientOffers("EGL_EXT_platform_device");
    const auto onDevice = [&](bool software) -> std::shared_ptr<EglDisplay> {
        for (const EglDevice& device : eglDevices()) {
            if (device.software != software) continue;
            void* const handle =
                eglGetPlatformDisplayEXT(EGL_PLATFORM_DEVICE_EXT, device.handle, nullptr);
            if (auto display = initialize(handle)) return display;
        }
        return nullptr;
    };
    if (devices && !isSoftwareForced()) {
        if (auto display = onDevice(false)) return display;
    }
    if (eglClientOffers("EGL_MESA_platform_surfaceless")) {
        void* const handle =
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
        if (auto display = initialize(handle)) return display;
    }
    return devices ? onDevice(true) : nullptr;
}

std::shared_ptr<EglDisplay> EglDisplay::forX11(xcb_connection_t* connection, int screen) {
    if (!eglClientOffers("EGL_EXT_platform_base")) return nullptr;
    if (!eglClientOffers("EGL_EXT_platform_xcb")) return throughXlib(connection, screen);
    const EGLint attributes[] = {kPlatformXcbScreen, screen, EGL_NONE};
    auto display = initialize(eglGetPlatformDisplayEXT(kPlatformXcb, connection, attributes));
    if (display) display->connection_ = connection;
    return display;
}

std::shared_ptr<EglDisplay> EglDisplay::throughXlib(xcb_connection_t* connection, int screen) {
    if (!eglClientOffers("EGL_EXT_platform_base") || !eglClientOffers("EGL_EXT_platform_x11") ||
        !xlib().isComplete())
        return nullptr;
    xlib().initThreads();
    void* const server = xlib().open(nullptr);
    if (!server) return nullptr;
    const std::shared_ptr<void> owner(server, [](void* opened) { xlib().close(opened); });
    xlib().onError([](void*, void*) { return 0; });
    xlib().onExit(
        server, [](void*, void*) {}, nullptr);
    const EGLint attributes[] = {EGL_PLATFORM_X11_SCREEN_EXT, screen, EGL_NONE};
    auto display = initialize(eglGetPlatformDisplayEXT(EGL_PLATFORM_X11_EXT, server, attributes));
    if (!display) return nullptr;
    display->connection_ = connection;
    display->xlib_ = owner;
    return display;
}

bool EglDisplay::isConnected() const {
    if (!connection_ || xcb_connection_has_error(connection_)) return false;
    pollfd socket{.fd = xcb_get_file_descriptor(connection_), .events = 0, .revents = 0};
    return poll(&socket, 1, 0) == 0;
}

bool EglDisplay::offers(std::string_view extension) const {
    return epoxy_extension_in_string(extensions_.c_str(), std::string(extension).c_str());
}

}  // namespace platform
