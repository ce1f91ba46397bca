// SPDX-License-Identifier: MIT
#include <QString>

#include "platform/window/WindowSystemKind.h"
#include "platform/window/wayland/WaylandSystem.h"

namespace platform {

namespace {

struct HangUp {
    void operator()(wl_display* display) const {
        if (display) wl_display_disconnect(display);
    }
};

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
        const std::shared_ptr<wl_display> display(wl_display_connect(nullptr), HangUp());
        return display && wayland::answers(*display) ? display : nullptr;
    }

    [[nodiscard]] std::unique_ptr<WindowSystem> open(MediaClock& clock) const override {
        return std::make_unique<wayland::WaylandSystem>(clock, QString());
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
