// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QRectF>
#include <QSize>
#include <QSizeF>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/view/Events.h"
#include "platform/window/Screen.h"
#include "platform/window/Surface.h"
#include "platform/window/WindowOptions.h"

namespace platform {

// Receives a native window's events and the user's input. The window above the seam
// implements the interface. Main thread, in a turn of the event loop; a call may drop the
// native window.
class NativeWindowDelegate {
  public:
    enum class Mouse { LeftDown, RightDown, OtherDown, Moved };

    // The size, the place, the scale or the screen has changed.
    virtual void geometryChanged() = 0;
    // NativeWindow::isSeen() has changed.
    virtual void visibilityChanged() = 0;
    // The system accepts the next frame (true), or no frame until it says so (false). True
    // at first. For systems that pace frames themselves.
    virtual void readyForFrame(bool ready) = 0;
    // A picture was shown at `time`, in the media clock's seconds, on a display whose
    // pictures are `interval` seconds apart; 0 where the display has no rhythm. Only where
    // NativeWindow::tellsPresentation().
    virtual void presented(double /*time*/, double /*interval*/) {}
    // The window lost its picture in `rect`; pixels of the picture, y down.
    virtual void exposed(const QRect& rect) = 0;
    virtual void keyDown(const KeyEvent& event) = 0;
    virtual void mouse(Mouse what, const MouseEvent& event) = 0;
    // The user asks to close the window; the window stays.
    virtual void closeAsked() = 0;
    // The window no longer exists; called once.
    virtual void gone() = 0;

  protected:
    ~NativeWindowDelegate() = default;
};

// The initial state of a native window of the program's own.
struct NativeWindowOptions {
    WindowOptions window;
    bool takesKeyboard = false;
    double opacity = 1.0;  // as in setOpacity()
    bool ignoresMouse = false;
    bool cursorHidden = false;
};

// One window of a window system: either made for the program, or a host's window in which
// the program only draws. Owned by the window above the seam. Main thread. A call that the
// system cannot follow does nothing.
class NativeWindow {
  public:
    virtual ~NativeWindow() = default;

    // The system's number for the window, > 0 from its making, known at least to this
    // process.
    [[nodiscard]] virtual std::int64_t number() const = 0;
    // A reference for other programs; empty where the system has none.
    [[nodiscard]] virtual WindowRef reference() const = 0;

    // Whether the window can be drawn on. A window that cannot has a size and input, but
    // never a frame.
    [[nodiscard]] virtual bool isDrawable() const = 0;
    // Whether the window still exists. May wait for the system.
    [[nodiscard]] virtual bool exists() = 0;

    // The content in points, as in Screen::frame. A host's window keeps its own.
    [[nodiscard]] virtual QRectF frame() const = 0;
    virtual void setFrame(const QRectF& frame) = 0;
    // The content's size, in points and in pixels of the picture.
    [[nodiscard]] virtual QSizeF size() const = 0;
    [[nodiscard]] virtual QSize pixelSize() const = 0;
    // Pixels per point, > 0; fractions are allowed.
    [[nodiscard]] virtual double scale() const = 0;
    // The screen with most of the window; none without screens.
    [[nodiscard]] virtual std::optional<Screen> screen() const = 0;

    // Shows the window above its equals.
    virtual void show() = 0;
    virtual void raise() = 0;
    virtual void hide() = 0;
    // Keeps the window above all others from now until it is hidden; see
    // WindowOptions::staysOnTop.
    virtual void keepOnTop() = 0;
    // Takes the keyboard; for a shown window.
    virtual void takeKeyboard() = 0;
    [[nodiscard]] virtual bool hasKeyboard() const = 0;

    // Whether the window is shown, covered or not.
    [[nodiscard]] virtual bool isShown() const = 0;
    // Whether a frame could be seen, as far as the system tells: the window is
    // shown, not minimised and not hidden by others.
    [[nodiscard]] virtual bool isSeen() const = 0;

    // Whether the system reports each picture that was shown.
    [[nodiscard]] virtual bool tellsPresentation() const { return false; }

    // Names an own window anew, for the desktop's frame, lists and switchers.
    virtual void setTitle(const QString& title) = 0;
    // Passes clicks to the windows below.
    virtual void setIgnoresMouse(bool ignores) = 0;
    // Hides the pointer over the window.
    virtual void setCursorHidden(bool hidden) = 0;
    // Sets the opacity of the whole window, in [0, 1]. Only where
    // Capabilities::fadesWindows; elsewhere Frame::opacity holds the value.
    virtual void setOpacity(double opacity) = 0;

    // Makes the surface to draw on; called on the render thread, and again after a way of
    // drawing failed. The maker may outlive the native window, and shares only thread-safe
    // data with the main thread. `ending` is a file that becomes readable once all waiting
    // must end. Null where the window cannot be drawn on.
    using SurfaceMaker = std::function<std::unique_ptr<Surface>(int ending)>;
    [[nodiscard]] virtual SurfaceMaker surfaceMaker(const SurfaceOptions& options) = 0;
    // Ends what a driver draws or waits for in the window, within seconds. Called before the
    // surface's render thread ends; nothing is drawn until the next surfaceMaker().
    virtual void endDrawing() {}
};

}  // namespace platform
