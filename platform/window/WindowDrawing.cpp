// SPDX-License-Identifier: MIT
#include "platform/window/WindowDrawing.h"

#include <utility>

#include "platform/window/WindowSystem.h"

namespace platform {

WindowDrawing::WindowDrawing(WindowServer& server, NativeWindow& native, Actions actions)
    : server_(server),
      native_(native),
      actions_(std::move(actions)),
      drawer_(server.options().drawer),
      pump_(server.clock(), sink_, actions_.build) {
    startRenderer(drawer_);
    updateVisibility();
}

WindowDrawing::~WindowDrawing() {
    native_.endDrawing();
}

void WindowDrawing::startRenderer(DrawerChoice drawer) {
    const auto tell = [this](auto action) {
        QMetaObject::invokeMethod(&mailbox_, std::move(action), Qt::QueuedConnection);
    };
    if (renderer_) {
        framesBefore_ += renderer_->framesDrawn();
        native_.endDrawing();
    }
    renderer_.reset();
    renderer_ = std::make_unique<RenderThread>(
        server_.clock(),
        RenderThread::Actions{
            .makeSurface = native_.surfaceMaker({.drawer = drawer,
                                                 .resetStatus = server_.options().resetStatus,
                                                 .withoutOpenGl = server_.options().withoutOpenGl}),
            .firstFrameShown =
                [this, tell] {
                    tell([this] {
                        const bool counts = !firstFrameTime_ && !native_.tellsPresentation();
                        if (counts) firstFrameTime_ = server_.clock().now();
                    });
                },
            .scenesFailed = [this, tell] { tell([this] { actions_.scenesFailed(); }); },
            .ended = [this,
                      tell](Surface::Result result) { tell([this, result] { ended(result); }); }});
}

void WindowDrawing::ended(Surface::Result result) {
    if (result == Surface::Result::ServerGone || !server_.isConnected()) {
        server_.system().reportLoss();
        return;
    }
    if (!native_.exists()) {
        actions_.gone();
    } else if (std::exchange(drawer_, DrawerChoice::Cpu) != DrawerChoice::Cpu) {
        // OpenGL failed on a window that still exists.
        startRenderer(DrawerChoice::Cpu);
        pump_.request();
    }
}

void WindowDrawing::presented(double time) {
    // The first report is nearer to the truth than the time of the drawing.
    if (presented_++ == 0) firstFrameTime_ = time;
}

void WindowDrawing::setGone() {
    gone_ = true;
    updateVisibility();
}

void WindowDrawing::updateVisibility() {
    pump_.setVisible(native_.isSeen() && wanted_ && !gone_);
}

void WindowDrawing::setWanted(bool wanted) {
    wanted_ = wanted;
    updateVisibility();
}

}  // namespace platform
