// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>

#include "platform/view/FramePump.h"
#include "platform/window/NativeWindow.h"
#include "platform/window/RenderThread.h"
#include "platform/window/WindowServer.h"

namespace platform {

// Draws in one native window: has its frames built on the main thread and shown on a render
// thread. Owned by the window's core, which passes the native window's events on. Main
// thread.
class WindowDrawing {
  public:
    struct Actions {
        FramePump::Build build;
        // Called when a scene cannot be drawn; at most once for each way of drawing.
        std::function<void()> scenesFailed;
        // Called when the window no longer exists.
        std::function<void()> gone;
    };

    // The server and the native window outlive the drawing.
    WindowDrawing(WindowServer& server, NativeWindow& native, Actions actions);
    ~WindowDrawing();
    WindowDrawing(const WindowDrawing&) = delete;
    WindowDrawing& operator=(const WindowDrawing&) = delete;

    // Seconds from frame to frame, > 0.
    void setFrameInterval(double seconds) { pump_.setInterval(seconds); }
    // Whether the owner finds drawing useful.
    void setWanted(bool wanted);
    // Called for the native window's event of the same meaning.
    void updateVisibility();
    void setReady(bool ready) { pump_.setReady(ready); }
    void presented(double time);
    void expose(const QRect& rect) { renderer_->expose(rect); }
    void setGone();

    void requestFrame() { pump_.request(); }

    // The frames that the system reported as shown; the drawn ones where the system reports
    // none.
    [[nodiscard]] std::uint64_t framesShown() const {
        return native_.tellsPresentation() ? presented_ : framesBefore_ + renderer_->framesDrawn();
    }
    [[nodiscard]] std::optional<double> firstFrameTime() const { return firstFrameTime_; }
    [[nodiscard]] QString drawer() const { return renderer_->drawer(); }
    [[nodiscard]] int rung() const { return renderer_->rung(); }
    [[nodiscard]] bool isSoftware() const { return renderer_->isSoftware(); }

  private:
    // Forwards frames to the present render thread.
    struct Sink final : FrameSink {
        WindowDrawing& drawing;
        explicit Sink(WindowDrawing& d) : drawing(d) {}
        void submit(Frame& frame) override { drawing.renderer_->submit(frame); }
    };

    void startRenderer(DrawerChoice drawer);
    void ended(Surface::Result result);

    WindowServer& server_;
    NativeWindow& native_;
    const Actions actions_;
    bool wanted_ = true;
    bool gone_ = false;
    DrawerChoice drawer_;
    std::uint64_t framesBefore_ = 0;
    std::uint64_t presented_ = 0;
    std::optional<double> firstFrameTime_;
    // Receives messages from other threads to the main one, for the drawing's lifetime.
    QObject mailbox_;
    std::unique_ptr<RenderThread> renderer_;
    Sink sink_{*this};
    FramePump pump_;
};

}  // namespace platform
