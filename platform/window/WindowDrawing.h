// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

#include <QObject>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>

#include "platform/view/FramePump.h"
#include "platform/window/RenderThread.h"
#include "platform/window/WindowServer.h"
#include "platform/window/x11/SurfaceFor.h"

namespace platform {

// Draws in one X window, whoever made it: listens to what becomes of it, has its
// frames built on the main thread and shown on a render thread. Main thread.
class WindowDrawing {
  public:
    struct Actions {
        FramePump::Build build;
        // The window has another size or place than before.
        std::function<void()> geometryChanged;
        // There is a scene to draw and no means to; at most once for each way
        // of drawing.
        std::function<void()> scenesFailed;
        // The window is no more; called once, in a turn of the event loop.
        std::function<void()> gone;
    };

    WindowDrawing(WindowServer& server, std::uint32_t window, Actions actions);
    ~WindowDrawing();
    WindowDrawing(const WindowDrawing&) = delete;
    WindowDrawing& operator=(const WindowDrawing&) = delete;

    [[nodiscard]] std::uint32_t id() const { return window_; }
    // In pixels; the place is relative to the root window, as last told.
    [[nodiscard]] const QRect& geometry() const { return geometry_; }
    // Whether it is mapped.
    [[nodiscard]] bool isMapped() const { return mapped_; }

    void setFrameInterval(double seconds);
    // Whether there is any sense in drawing, as far as the owner knows.
    void setWanted(bool wanted);
    void requestFrame();

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
    void handle(const xcb_generic_event_t& event);
    void moved(const QRect& geometry);
    void findPlace();
    void ended(Surface::Result result);
    void windowGone();
    void updateVisibility();

    WindowServer& server_;
    const std::uint32_t window_;
    const Actions actions_;
    xcb_window_t root_ = 0;
    QRect geometry_;
    bool mapped_ = false;
    bool obscured_ = false;
    bool wanted_ = true;
    bool gone_ = false;
    DrawerChoice drawer_;
    std::uint64_t framesBefore_ = 0;
    std::optional<double> firstFrameTime_;
    // Takes what other threads send to the main one, as long as this lives.
    QObject mailbox_;
    std::unique_ptr<RenderThread> renderer_;
    Sink sink_{*this};
    FramePump pump_;
};

}  // namespace platform
