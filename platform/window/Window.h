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
#include "platform/window/WindowOptions.h"
#include "platform/window/WindowServer.h"

namespace platform {

class AnimationGroup;
class PicturePlace;
class WindowCore;

// A window's cost and shown frames so far; for measuring. A plain value.
struct WindowStatistics {
    std::uint64_t frames = 0;              // frames that reached the screen
    std::optional<double> firstFrameTime;  // when the first frame did, in the clock's time
    QString drawer;                        // "cpu", or the OpenGL renderer's name; empty before
    int rung = 0;                          // of the quality ladder; 0 is best
};

// A window that shows a tree of views: the program's own, a host's, or a place in another
// toolkit's scene. In a host's window and in a place the program only draws: the window
// follows the host's size and end, and takes no input, no focus and no grab. Frames are built on
// the main thread and drawn on a thread of the window's own; there are none while nothing changes
// or the window cannot be seen. Owned by its maker; keeps its views alive. Main thread.
class Window : public ViewHost {
  public:
    Window(WindowServer& server, const WindowOptions& options);
    Window(WindowServer& server, const HostRef& host);
    // The place outlives the window.
    Window(WindowServer& server, PicturePlace& place);
    virtual ~Window();
    Window(const Window&) = delete;
    Window& operator=(const Window&) = delete;

    // The view that fills the window and follows its size. A host's window has an empty
    // view of the right size from the start.
    [[nodiscard]] const std::shared_ptr<View>& contentView() const { return content_; }
    void setContentView(std::shared_ptr<View> view);

    // The content in points, as in Screen::frame. Moving a host's window does
    // nothing.
    [[nodiscard]] QRectF frame() const;
    void setFrame(const QRectF& frame);
    [[nodiscard]] double backingScaleFactor() const;
    // A reference for other programs, for a dialog that belongs to the window; empty for an
    // own window that was never shown.
    [[nodiscard]] WindowRef reference() const;
    // The screen with most of the window; none without screens.
    [[nodiscard]] std::optional<Screen> screen() const;

    // The name of an own window on the desktop; a host's window keeps the host's.
    [[nodiscard]] const QString& title() const { return options_.title; }
    void setTitle(const QString& title);

    [[nodiscard]] int level() const { return options_.level; }
    [[nodiscard]] bool isOpaque() const { return options_.opaque; }
    [[nodiscard]] bool hasShadow() const { return options_.hasShadow; }
    [[nodiscard]] std::uint32_t collectionBehavior() const { return options_.collectionBehavior; }

    // The window server's number for the window; 0 before it is first shown.
    [[nodiscard]] std::int64_t windowNumber() const;

    // Shows the window. Front puts it above its equals; key gives it the keyboard too.
    void show();
    void showWithKeyboard();
    // Gives the keyboard to the window, if it is shown and can have it.
    void takeKeyboard();
    void hide();
    [[nodiscard]] bool isVisible() const;

    [[nodiscard]] virtual bool canBecomeKey() const;
    [[nodiscard]] virtual bool canBecomeMain() const;
    [[nodiscard]] bool isKey() const override;
    // Chooses the view that gets the keys; false where the view does not accept keys.
    bool makeFirstResponder(View* view);
    [[nodiscard]] View* firstResponder() const { return firstResponder_; }

    // Whether clicks go to the windows below.
    [[nodiscard]] bool ignoresMouseEvents() const { return ignoresMouse_; }
    void setIgnoresMouseEvents(bool ignores);
    void setCursorHidden(bool hidden);

    // Opacity of the whole window in [0, 1]; a compositor shows it. During a fade, alpha()
    // is the value in between. Setting the opacity ends a fade.
    [[nodiscard]] double alpha() const;
    void setAlpha(double alpha);
    // Fades along the standard curve in 0.25 s, or in the group's duration.
    void fadeTo(double alpha);
    void fadeTo(double alpha, AnimationGroup& group);

    // Called when a host has destroyed its window, or the user asks to close an own one. An
    // own window stays unless the action closes it. The action may drop the window.
    void onClose(std::function<void()> action);

    [[nodiscard]] WindowStatistics statistics() const;

    // Called by a view that has changed its look.
    void setNeedsFrame() override;

  private:
    friend class View;
    friend class WindowCore;
    friend class WindowServer;
    [[nodiscard]] Window* asWindow() override { return this; }
    void detached(const View* view) override;
    void present(bool withKeyboard);
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
