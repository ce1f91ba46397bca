// SPDX-License-Identifier: MIT
// The two kinds of native windows of an X server, owned by the window above the seam. Main
// thread.
#pragma once

#include <memory>
#include <optional>

#include "platform/window/NativeWindow.h"
#include "platform/window/x11/OwnWindow.h"
#include "platform/window/x11/WindowWatch.h"

namespace platform {

// A host's window, in which the program only draws; it takes no input and ignores commands.
class HostWindow final : public NativeWindow {
  public:
    HostWindow(X11System& system, xcb_window_t window, NativeWindowDelegate& delegate)
        : watch_(system, window, delegate) {}

    [[nodiscard]] std::int64_t number() const override { return watch_.id(); }
    [[nodiscard]] WindowRef reference() const override;
    [[nodiscard]] bool isDrawable() const override { return true; }
    [[nodiscard]] bool exists() override { return watch_.exists(); }
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF&) override {}
    [[nodiscard]] QSizeF size() const override;
    [[nodiscard]] QSize pixelSize() const override { return watch_.geometry().size(); }
    [[nodiscard]] double scale() const override;
    [[nodiscard]] std::optional<Screen> screen() const override;
    void show() override {}
    void raise() override {}
    void hide() override {}
    void keepOnTop() override {}
    void takeKeyboard() override {}
    [[nodiscard]] bool hasKeyboard() const override { return false; }
    [[nodiscard]] bool isShown() const override { return watch_.isMapped(); }
    [[nodiscard]] bool isSeen() const override { return watch_.isInSight(); }
    void setIgnoresMouse(bool) override {}
    void setTitle(const QString&) override {}
    void setCursorHidden(bool) override {}
    void setOpacity(double) override {}
    [[nodiscard]] SurfaceMaker surfaceMaker(const SurfaceOptions& options) override {
        return watch_.surfaceMaker(options);
    }

  private:
    WindowWatch watch_;
};

// A window of the program's own, made by Qt. Where Qt runs on another system the window has
// everything but a picture.
class ProgramWindow final : public NativeWindow {
  public:
    ProgramWindow(X11System& system, const NativeWindowOptions& options,
                  NativeWindowDelegate& delegate);
    ~ProgramWindow() override;

    [[nodiscard]] std::int64_t number() const override;
    [[nodiscard]] WindowRef reference() const override;
    [[nodiscard]] bool isDrawable() const override { return watch_.has_value(); }
    [[nodiscard]] bool exists() override { return watch_ && watch_->exists(); }
    [[nodiscard]] QRectF frame() const override;
    void setFrame(const QRectF& frame) override;
    [[nodiscard]] QSizeF size() const override;
    [[nodiscard]] QSize pixelSize() const override;
    [[nodiscard]] double scale() const override;
    [[nodiscard]] std::optional<Screen> screen() const override;
    void show() override;
    void raise() override;
    void hide() override;
    void keepOnTop() override;
    void takeKeyboard() override;
    [[nodiscard]] bool hasKeyboard() const override { return window_.isActive(); }
    [[nodiscard]] bool isShown() const override { return window_.isVisible(); }
    [[nodiscard]] bool isSeen() const override;
    void setIgnoresMouse(bool ignores) override;
    void setTitle(const QString& title) override;
    void setCursorHidden(bool hidden) override;
    void setOpacity(double opacity) override;
    [[nodiscard]] SurfaceMaker surfaceMaker(const SurfaceOptions& options) override;

  private:
    // Sends Qt's buffered requests. Qt sends them only when an event comes in, and without
    // movement none may come for long.
    static void flush();

    X11System& system_;
    const WindowOptions options_;
    OwnWindow window_;
    std::optional<WindowWatch> watch_;
};

}  // namespace platform
