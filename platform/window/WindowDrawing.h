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

// Draws in one native window: has its frames built on the main thread and shown on
// a render thread. Owned by the window's core, which passes on what the native
// window tells. Main thread.
class WindowDrawing {
  public:
    struct Actions {
        FramePump::Build build;
        // There is a scene to draw and no means to; at most once for each way
        // of drawing.
        std::function<void()> scenesFailed;
        // The window turned out to be no more.
        std::function<void()> gone;
    };

    // The server and the native window outlive the drawing.
    WindowDrawing(WindowServer& server, NativeWindow& native, Actions actions);
    WindowDrawing(const WindowDrawing&) = delete;
    WindowDrawing& operator=(const WindowDrawing&) = delete;

    // Seconds from frame to frame, > 0.
    void setFrameInterval(double seconds) { pump_.setInterval(seconds); }
    // Whether there is any sense in drawing, as far as the owner knows.
    void setWanted(bool wanted);
    // Passed on from the native window.
    void updateVisibility();
    void setReady(bool ready) { pump_.setReady(ready); }
    void expose(const QRect& rect) { renderer_->expose(rect); }
    void setGone();

    void requestFrame() { pump_.request(); }

    [[nodiscard]] std::uint64_t framesDrawn() const {
        return framesBefore_ + renderer_->framesDrawn();
    }
    [[nodiscard]] std::optional<double> firstFrameTime() const { return firstFrameTime_; }
    [[nodiscard]] QString drawer() const { return renderer_->drawer(); }
    [[nodiscard]] int rung() const { return renderer_->rung(); }

  private:
    // Forwards to the render thread that there is at the moment.
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
    std::optional<double> firstFrameTime_;
    // Takes what other threads send to the main one, as long as the drawing lives.
    QObject mailbox_;
    std::unique_ptr<RenderThread> renderer_;
    Sink sink_{*this};
    FramePump pump_;
};

}  // namespace platform
