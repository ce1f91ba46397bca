// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>
#include <cstdint>
#include <functional>

#include "platform/window/NativeWindow.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// The initial state of an OwnWindow. A plain value.
struct OwnWindowOptions {
    WindowOptions window;
    bool takesKeys = false;
    // The server shows its windows on a Wayland compositor. The compositor decides where a
    // full-screen window lies and which window gets the keys, so that the window escapes the
    // window manager and grabs the keys.
    bool onWayland = false;
};

// A window of the program's own. Qt makes it and delivers its input, and draws nothing in
// it. Owned by its native window. Main thread, under a QGuiApplication.
class OwnWindow final : public QWindow {
  public:
    // Calls `keyboardLost` when another window, of this or another program, gets the
    // keyboard.
    OwnWindow(const OwnWindowOptions& options, NativeWindowDelegate& delegate,
              std::function<void()> keyboardLost);
    ~OwnWindow() override;

    // The X window, made on the first call; 0 where Qt is not on X.
    [[nodiscard]] std::uint32_t xWindow();

    void show();
    // Takes the keyboard; for a window that is shown.
    void takeKeys();
    // Whether no window manager places the window.
    [[nodiscard]] bool escapes() const;

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    // The second press of a double click is a press too.
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }

  private:
    [[nodiscard]] MouseEvent from(const QMouseEvent& event) const;
    void prepare(const XConnection& connection, xcb_window_t window);

    const OwnWindowOptions options_;
    NativeWindowDelegate& delegate_;
    const std::function<void()> keyboardLost_;
};

}  // namespace platform
