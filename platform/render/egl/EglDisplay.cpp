// SPDX-License-Identifier: MIT
#include <cstdlib>
#include <map>
#include <mutex>
#include <utility>
#include <vector>

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/EglCalls.h"
#include "platform/render/egl/EglDevices.h"

namespace platform {

namespace {

// Counts the holders of each display. A driver gives every caller of one connection the
// same display, and closing that display closes it for all.
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

}  // namespace

bool EglDisplay::clientOffers(const char* extension) {
    if (!loadEgl()) return false;
    const char* const all = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    return all && listsExtension(all, extension);
}

std::vector<EglDevice> eglDevices() {
    const bool listed = EglDisplay::clientOffers("EGL_EXT_device_enumeration") &&
                        EglDisplay::clientOffers("EGL_EXT_device_query");
    if (!listed && !EglDisplay::clientOffers("EGL_EXT_device_base")) return {};
    EGLint count = 0;
    if (!eglQueryDevicesEXT(0, nullptr, &count) || count <= 0) return {};
    std::vector<EGLDeviceEXT> handles(static_cast<std::size_t>(count));
    if (!eglQueryDevicesEXT(count, handles.data(), &count)) return {};
    std::vector<EglDevice> devices;
    for (EGLDeviceEXT handle : handles) {
        const char* const all = eglQueryDeviceStringEXT(handle, EGL_EXTENSIONS);
        const bool software = all && listsExtension(all, "EGL_MESA_device_software");
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
    if (!EglDisplay::clientOffers("EGL_EXT_platform_base")) return nullptr;
    // Devices are tried first: beside a GPU's own driver, the default platform may be Mesa's
    // software renderer.
    const bool devices = EglDisplay::clientOffers("EGL_EXT_platform_device");
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
    if (EglDisplay::clientOffers("EGL_MESA_platform_surfaceless")) {
        void* const handle =
            eglGetPlatformDisplayEXT(EGL_PLATFORM_SURFACELESS_MESA, nullptr, nullptr);
        if (auto display = initialize(handle)) return display;
    }
    return devices ? onDevice(true) : nullptr;
}

std::shared_ptr<EglDisplay> EglDisplay::on(EglPlatform platform) {
    if (!clientOffers("EGL_EXT_platform_base")) return nullptr;
    auto display =
        initialize(eglGetPlatformDisplayEXT(platform.name, platform.native, platform.attributes));
    if (!display) return nullptr;
    platform.native = nullptr;
    platform.attributes = nullptr;
    display->platform_ = std::move(platform);
    return display;
}

bool EglDisplay::offers(std::string_view extension) const {
    return listsExtension(extensions_, extension);
}

}  // namespace platform
