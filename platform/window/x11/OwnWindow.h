// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <QWindow>
#include <cstdint>

#include "platform/view/Events.h"
#include "platform/window/Window.h"

namespace platform {

// Who an own window tells of what it gets.
class OwnWindowDelegate {
  public:
    virtual ~OwnWindowDelegate() = default;
    enum class Mouse { LeftDown, RightDown, OtherDown, Moved };
    virtual void keyDown(const KeyEvent& event) = 0;
    virtual void mouse(Mouse what, const MouseEvent& event) = 0;
    virtual void closeAsked() = 0;
    // Another window, maybe another program's, has the keyboard now.
    virtual void keysLost() = 0;
};

// A window of the program's own: Qt makes it and brings its input, and draws
// nothing in it. Main thread, under a QGuiApplication.
class OwnWindow final : public QWindow {
  public:
    OwnWindow(const WindowOptions& options, bool takesKeys, OwnWindowDelegate& delegate);
    ~OwnWindow() override;

    // The X window; 0 where the desktop is not X.
    [[nodiscard]] std::uint32_t xWindow();

    void show();
    // For a shown window only.
    void takeKeys();
    void setIgnoresMouse(bool ignores);

    // Sends what was asked for so far. Qt does so only when something comes in,
    // and where nothing moves nothing may for long.
    static void flush();

  protected:
    bool event(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

  private:
    [[nodiscard]] MouseEvent from(const QMouseEvent& event) const;
    void prepare(xcb_connection_t* connection, xcb_window_t window);

    const WindowOptions options_;
    OwnWindowDelegate& delegate_;
};

}  // namespace platform
