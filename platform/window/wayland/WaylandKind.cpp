// SPDX-License-Identifier: MIT
#include <dlfcn.h>

#include <QString>
#include <filesystem>

#include "platform/window/WindowSystemKind.h"
#include "platform/window/wayland/WaylandDoor.h"

namespace platform {

namespace {

// Loads the library from beside this one's own file; null where it is absent.
const WaylandDoor* findDoor() {
    Dl_info own{};
    if (dladdr(reinterpret_cast<const void*>(&findDoor), &own) == 0) return nullptr;
    const auto file =
        std::filesystem::path(own.dli_fname).replace_filename(BRIXTEL_WAYLAND_LIBRARY);
    void* const library = dlopen(file.c_str(), RTLD_LAZY | RTLD_LOCAL);
    if (!library) return nullptr;
    const auto ask =
        reinterpret_cast<decltype(&brixtelWaylandDoor)>(dlsym(library, "brixtelWaylandDoor"));
    return ask ? ask() : nullptr;
}

// The library stays loaded after the first call.
const WaylandDoor* door() {
    static const WaylandDoor* const found = findDoor();
    return found;
}

class WaylandKind final : public WindowSystemKind {
  public:
    [[nodiscard]] QByteArray name() const override { return QByteArrayLiteral("wayland"); }
    [[nodiscard]] QByteArray qtPlugin() const override { return QByteArrayLiteral("wayland"); }
    [[nodiscard]] bool needsQt() const override { return false; }
    [[nodiscard]] bool hasHosts() const override { return false; }

    [[nodiscard]] QString address() const override {
        return qEnvironmentVariable("WAYLAND_DISPLAY");
    }

    [[nodiscard]] std::shared_ptr<void> reach() const override {
        if (qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) return nullptr;
        return door() ? door()->reach() : nullptr;
    }

    [[nodiscard]] std::unique_ptr<WindowSystem> open(MediaClock& clock) const override {
        return door()->open(clock);
    }

    [[nodiscard]] QtLoss lossIn(const QString& message) const override {
        // Seen in Qt 6.4.
        if (message.contains(QLatin1String("connection broke. Did the")) &&
            message.contains(QLatin1String("compositor")))
            return QtLoss::Gone;
        return message.contains(QLatin1String("connection experienced a fatal error"))
                   ? QtLoss::Refused
                   : QtLoss::None;
    }

    // Wayland has no name for a window of another program.
    [[nodiscard]] std::optional<HostRef> readHost(const QString&) const override { return {}; }
    [[nodiscard]] std::optional<WindowRef> readWindow(const QString&) const override { return {}; }

    // The compositor alone decides on frames.
    void askForDarkFrame(QWindow&) const override {}
    void askForTitleOnly(QWindow&) const override {}
    [[nodiscard]] std::optional<QRect> placeOf(const WindowRef&) const override { return {}; }
    [[nodiscard]] std::shared_ptr<void> attach(QWindow&, const WindowRef&) const override {
        return nullptr;
    }
    [[nodiscard]] WindowRef refOf(QWindow&) const override { return {}; }
};

}  // namespace

const WindowSystemKind& waylandKind();

const WindowSystemKind& waylandKind() {
    static const WaylandKind kind;
    return kind;
}

}  // namespace platform
