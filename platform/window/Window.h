// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

#include "platform/view/View.h"
#include "platform/window/Screen.h"
#include "platform/window/WindowServer.h"

namespace platform {

class AnimationGroup;
class WindowCore;

enum class WindowStyle {
    Titled,      // an ordinary window with a frame of the window manager
    Borderless,  // its content and nothing else
    FullScreen,  // covers the screen that its frame lies on, panels included
};

// How a window behaves among spaces. One with a level above 0 is on every space,
// stationary, left out of cycling and over full-screen windows anyway.
enum CollectionBehavior : std::uint32_t {
    CanJoinAllSpaces = 0x1,
    Stationary = 0x10,
    IgnoresCycle = 0x40,
    FullScreenAuxiliary = 0x100,
};

struct WindowOptions {
    QRectF frame;  // of the content: points, as in Screen::frame
    WindowStyle style = WindowStyle::Borderless;
    QString title;
    // An opaque window is black where nothing is drawn, from its first moment;
    // another shows what lies below.
    bool opaque = true;
    // 0 is an ordinary window. Above it the window is out of the window
    // manager's hands and on top, on every space, the higher level the higher.
    int level = 0;
    std::uint32_t collectionBehavior = 0;  // CollectionBehavior bits
    bool hasShadow = true;                 // where a compositor gives windows one
    // Nothing that is opened or raised later covers it while it is shown, but a
    // screen saver or lock. For a level above 0.
    bool staysOnTop = false;
};

// A window that someone else made and keeps, by its X id; 0 is the root window.
struct HostWindow {
    std::uint32_t id = 0;
};

// A window's cost and pictures so far; for measuring.
struct WindowStatistics {
    std::uint64_t frames = 0;              // that reached the screen
    std::optional<double> firstFrameTime;  // the clock's, as the first one did
    QString drawer;                        // "cpu", or the OpenGL renderer's name; empty before
    int rung = 0;                          // of the quality ladder; 0 is best
};

// A window that shows a tree of views. Either the program's own, made and
// given its input by Qt, or a host's, which is only drawn in: it is listened to
// for its size and its end, and takes no input, no focus and no grab. Frames
// are built on the main thread and drawn on a thread of the window's own; while
// nothing changes, or nobody could see it, there are none.
class Window : public ViewHost {
  public:
    Window(WindowServer& server, const WindowOptions& options);
    Window(WindowServer& server, HostWindow host);
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // Fills the window and follows its size. A host's window has an empty view
    // of the right size from the start.
    [[nodiscard]] const std::shared_ptr<View>& contentView() const { return content_; }
    void setContentView(std::shared_ptr<View> view);

    // The content in points, as in Screen::frame. Moving a host's window does
    // nothing.
    [[nodiscard]] QRectF frame() const;
    void setFrame(const QRectF& frame);
    [[nodiscard]] double backingScaleFactor() const;
    // Its X id; 0 for an own window that was never shown.
    [[nodiscard]] std::uint32_t xWindow() const;
    // The screen with most of it; none without screens.
    [[nodiscard]] std::optional<Screen> screen() const;

    [[nodiscard]] int level() const { return options_.level; }
    [[nodiscard]] bool isOpaque() const { return options_.opaque; }
    [[nodiscard]] bool hasShadow() const { return options_.hasShadow; }
    [[nodiscard]] std::uint32_t collectionBehavior() const { return options_.collectionBehavior; }

    // The window server's number for it; 0 before it is first shown.
    [[nodiscard]] std::int64_t windowNumber() const;

    // Shows it. Front puts it above its equals; key gives it the keyboard too.
    void orderFront();
    void makeKeyAndOrderFront();
    // Gives the keyboard to one that is shown and can have it.
    void makeKey();
    void orderOut();
    [[nodiscard]] bool isVisible() const;

    [[nodiscard]] virtual bool canBecomeKey() const;
    [[nodiscard]] virtual bool canBecomeMain() const;
    [[nodiscard]] bool isKey() const override;
    // The view that gets the keys; false where it does not accept them.
    bool makeFirstResponder(View* view);
    [[nodiscard]] View* firstResponder() const { return firstResponder_; }

    // Clicks go to what lies below.
    [[nodiscard]] bool ignoresMouseEvents() const { return ignoresMouse_; }
    void setIgnoresMouseEvents(bool ignores);
    void setCursorHidden(bool hidden);

    // Opacity of the whole window in [0, 1]; a compositor shows it. While it
    // fades, alpha() is the value in between. Setting it ends a fade.
    [[nodiscard]] double alpha() const;
    void setAlpha(double alpha);
    // Fades along the standard curve in 0.25 s, or as long as the group says.
    void fadeTo(double alpha);
    void fadeTo(double alpha, AnimationGroup& group);

    // Called when a host has destroyed its window, or the user asks to close an
    // own one, which stays unless the action sees to it. The action may drop the
    // window.
    void onClose(std::function<void()> action);

    [[nodiscard]] WindowStatistics statistics() const;

    // A view's word that it looks different.
    void setNeedsFrame() override;

  private:
    friend class View;
    friend class WindowCore;
    friend class WindowServer;
    [[nodiscard]] Window* asWindow() override { return this; }
    void detached(const View* view) override;
    void show(bool asKey);
    void raise();

    WindowServer& server_;
    WindowOptions options_;
    std::shared_ptr<View> content_;
    View* firstResponder_ = nullptr;
    bool ignoresMouse_ = false;
    bool cursorHidden_ = false;
    std::unique_ptr<WindowCore> core_;
};

}  // namespace platform
