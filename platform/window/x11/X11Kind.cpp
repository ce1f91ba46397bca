// SPDX-License-Identifier: MIT
#include <QWindow>
#include <array>

#include "platform/window/WindowSystemKind.h"
#include "platform/window/x11/WindowWatch.h"
#include "platform/window/x11/X11System.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

namespace {

// The fields of _MOTIF_WM_HINTS, which every current window manager reads.
struct MotifHints {
    static constexpr std::uint32_t kFunctions = 1U << 0, kDecorations = 1U << 1;
    static constexpr std::uint32_t kMove = 1U << 2;
    static constexpr std::uint32_t kBorder = 1U << 1, kTitle = 1U << 3;
};

class X11Kind final : public WindowSystemKind {
  public:
    [[nodiscard]] QByteArray name() const override { return QByteArrayLiteral("x11"); }
    [[nodiscard]] QByteArray qtPlugin() const override { return QByteArrayLiteral("xcb"); }
    [[nodiscard]] bool needsQt() const override { return true; }
    [[nodiscard]] bool hasHosts() const override { return true; }

    [[nodiscard]] QString address() const override { return qEnvironmentVariable("DISPLAY"); }

    [[nodiscard]] std::shared_ptr<void> reach() const override {
        auto connection = std::make_shared<XConnection>(QString());
        if (!connection->isAlive()) return nullptr;
        return connection;
    }

    [[nodiscard]] std::unique_ptr<WindowSystem> open(MediaClock& clock) const override {
        return std::make_unique<X11System>(clock);
    }

    [[nodiscard]] QtLoss lossIn(const QString& message) const override {
        return isQtsLament(message) ? QtLoss::Fatal : QtLoss::None;
    }

    [[nodiscard]] std::optional<HostRef> readHost(const QString& text) const override {
        const auto number = readWindowNumber(text);
        return number ? std::optional(HostRef{QString::number(*number)}) : std::nullopt;
    }

    [[nodiscard]] std::optional<WindowRef> readWindow(const QString& text) const override {
        const auto number = readWindowNumber(text);
        return number ? std::optional(WindowRef{QString::number(*number)}) : std::nullopt;
    }

    void askForDarkFrame(QWindow& window) const override {
        if (const XConnection* const connection = XConnection::ofQt())
            connection->setText(idOf(window), "_GTK_THEME_VARIANT", "dark");
    }

    void askForTitleOnly(QWindow& window) const override {
        const XConnection* const connection = XConnection::ofQt();
        if (!connection) return;
        constexpr std::string_view kName = "_MOTIF_WM_HINTS";
        constexpr std::array<std::uint32_t, 5> kWords{
            MotifHints::kFunctions | MotifHints::kDecorations, MotifHints::kMove,
            MotifHints::kBorder | MotifHints::kTitle, 0, 0};
        connection->setNumbers(idOf(window), kName, connection->atom(kName), kWords);
    }

    [[nodiscard]] std::optional<QRect> placeOf(const WindowRef& window) const override {
        const XConnection* const connection = XConnection::ofQt();
        const auto number = readWindowNumber(window.text);
        if (!connection || !number) return std::nullopt;
        const auto look = lookAt(connection->get(), *number);
        const auto corner = look ? connection->cornerOf(*number, look->root) : std::nullopt;
        if (!corner) return std::nullopt;
        return pixelsToQt({*corner, QSize(look->width, look->height)}).toRect();
    }

    [[nodiscard]] std::shared_ptr<void> attach(QWindow& dialog,
                                               const WindowRef& owner) const override {
        const auto number = readWindowNumber(owner.text);
        if (!number) return nullptr;
        const std::shared_ptr<QWindow> parent(QWindow::fromWinId(*number));
        dialog.setTransientParent(parent.get());
        return parent;
    }

    [[nodiscard]] WindowRef refOf(QWindow& window) const override {
        return {QString::number(idOf(window))};
    }

  private:
    static xcb_window_t idOf(QWindow& window) { return static_cast<xcb_window_t>(window.winId()); }
};

}  // namespace

const WindowSystemKind& x11Kind();

const WindowSystemKind& x11Kind() {
    static const X11Kind kind;
    return kind;
}

}  // namespace platform
