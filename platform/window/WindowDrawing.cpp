// SPDX-License-Identifier: MIT
#include "platform/window/WindowDrawing.h"

#include <utility>

#include "platform/window/x11/EventConnection.h"

namespace platform {

namespace {

template <typename Event>
const Event& as(const xcb_generic_event_t& event) {
    return reinterpret_cast<const Event&>(event);
}

constexpr int kEventType = 0x7f;  // without the mark of events sent by clients

}  // namespace

WindowDrawing::WindowDrawing(WindowServer& server, std::uint32_t window, Actions actions)
    : server_(server),
      window_(window),
      actions_(std::move(actions)),
      drawer_(server.options().drawer),
      pump_(server.clock(), sink_, actions_.build) {
    EventConnection& events = server_.events();
    // Before looking, so that nothing happens unseen in between.
    events.listen(window_, [this](const xcb_generic_event_t& event) { handle(event); });
    const auto look = lookAt(events.get(), window_);
    if (look) {
        geometry_ = QRect(0, 0, look->width, look->height);
        mapped_ = look->viewable;
        root_ = look->root;
        findPlace();
    } else {
        QMetaObject::invokeMethod(
            &mailbox_, [this] { windowGone(); }, Qt::QueuedConnection);
    }
    events.readSoon();
    startRenderer(drawer_);
    updateVisibility();
}

WindowDrawing::~WindowDrawing() {
    server_.events().ignore(window_);
}

void WindowDrawing::startRenderer(DrawerChoice drawer) {
    const auto tell = [this](auto action) {
        QMetaObject::invokeMethod(&mailbox_, std::move(action), Qt::QueuedConnection);
    };
    const SurfaceOptions options{.drawer = drawer,
                                 .display = server_.options().display,
                                 .window = window_,
                                 .resetStatus = server_.options().resetStatus};
    if (renderer_) framesBefore_ += renderer_->framesDrawn();
    renderer_.reset();
    renderer_ = std::make_unique<RenderThread>(
        server_.clock(),
        RenderThread::Actions{
            .makeSurface =
                [options](int ending) {
                    SurfaceOptions own = options;
                    own.ending = ending;
                    return makeSurfaceFor(own);
                },
            .firstFrameShown =
                [this, tell] {
                    tell([this] {
                        if (!firstFrameTime_) firstFrameTime_ = server_.clock().now();
                    });
                },
            .scenesFailed = [this, tell] { tell([this] { actions_.scenesFailed(); }); },
            .ended = [this,
                      tell](Surface::Result result) { tell([this, result] { ended(result); }); }});
}

void WindowDrawing::ended(Surface::Result result) {
    if (result == Surface::Result::ServerGone || !server_.events().isAlive()) {
        server_.events().lost();
        return;
    }
    const bool exists = lookAt(server_.events().get(), window_).has_value();
    server_.events().readSoon();
    if (!exists) {
        windowGone();
    } else if (std::exchange(drawer_, DrawerChoice::Cpu) != DrawerChoice::Cpu) {
        // OpenGL gave up on a window that is still there.
        startRenderer(DrawerChoice::Cpu);
        pump_.request();
    }
}

void WindowDrawing::windowGone() {
    if (std::exchange(gone_, true)) return;
    mapped_ = false;
    updateVisibility();
    actions_.gone();
}

void WindowDrawing::handle(const xcb_generic_event_t& event) {
    switch (event.response_type & kEventType) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto& e = as<xcb_configure_notify_event_t>(event);
            // The place is relative to the parent, unless a window manager says it.
            moved({geometry_.topLeft(), QSize(e.width, e.height)});
            break;
        }
        case XCB_EXPOSE: {
            const auto& e = as<xcb_expose_event_t>(event);
            renderer_->expose({e.x, e.y, e.width, e.height});
            break;
        }
        case XCB_VISIBILITY_NOTIFY:
            // The only word of what a window lies in being mapped.
            mapped_ = true;
            obscured_ =
                as<xcb_visibility_notify_event_t>(event).state == XCB_VISIBILITY_FULLY_OBSCURED;
            updateVisibility();
            break;
        case XCB_MAP_NOTIFY:
            mapped_ = true;
            updateVisibility();
            break;
        case XCB_UNMAP_NOTIFY:
            mapped_ = false;
            updateVisibility();
            break;
        case XCB_DESTROY_NOTIFY:
            windowGone();
            break;
        default:
            break;
    }
}

void WindowDrawing::moved(const QRect& geometry) {
    const QRect before = std::exchange(geometry_, geometry);
    findPlace();
    if (before == geometry_) return;
    actions_.geometryChanged();
    pump_.request();
}

void WindowDrawing::findPlace() {
    EventConnection& events = server_.events();
    const auto cookie = xcb_translate_coordinates(events.get(), window_, root_, 0, 0);
    xcb_generic_error_t* error = nullptr;
    const XcbReply<xcb_translate_coordinates_reply_t> reply(
        xcb_translate_coordinates_reply(events.get(), cookie, &error));
    std::free(error);
    if (reply) geometry_.moveTo(reply->dst_x, reply->dst_y);
    events.readSoon();
}

void WindowDrawing::updateVisibility() {
    pump_.setVisible(mapped_ && !obscured_ && wanted_ && !gone_);
}

void WindowDrawing::setFrameInterval(double seconds) {
    pump_.setInterval(seconds);
}

void WindowDrawing::setWanted(bool wanted) {
    wanted_ = wanted;
    updateVisibility();
}

void WindowDrawing::requestFrame() {
    pump_.request();
}

}  // namespace platform
