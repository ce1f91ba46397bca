// SPDX-License-Identifier: MIT
#include "platform/window/x11/WindowWatch.h"

#include <QScreen>
#include <utility>

#include "platform/window/ScreenSpace.h"
#include "platform/window/SurfaceFor.h"
#include "platform/window/x11/CpuSurface.h"
#include "platform/window/x11/EglOnX11.h"
#include "platform/window/x11/X11System.h"

namespace platform {

WindowWatch::WindowWatch(X11System& system, xcb_window_t window, NativeWindowDelegate& delegate)
    : system_(system), window_(window), delegate_(delegate) {
    EventConnection& events = system_.events();
    // Listening starts before the first look, so that no event is missed in between.
    events.listen(window_, [this](const xcb_generic_event_t& event) { handle(event); });
    const auto look = lookAt(events.get(), window_);
    if (look) {
        geometry_ = QRect(0, 0, look->width, look->height);
        mapped_ = look->viewable;
        root_ = look->root;
        findPlace();
    } else {
        QMetaObject::invokeMethod(
            &mailbox_, [this] { setGone(); }, Qt::QueuedConnection);
    }
    events.readSoon();
    system_.added(*this);
}

WindowWatch::~WindowWatch() {
    system_.removed(*this);
    system_.events().ignore(window_);
}

bool WindowWatch::exists() {
    const bool there = lookAt(system_.events().get(), window_).has_value();
    system_.events().readSoon();
    mapped_ = mapped_ && there;
    return there;
}

NativeWindow::SurfaceMaker WindowWatch::surfaceMaker(const SurfaceOptions& options) const {
    return [options, display = system_.display(),
            window = window_](int ending) -> std::unique_ptr<Surface> {
        return surfaceFor(options,
                          {.sharesGpu = [&] { return sharesGpu(XConnection(display)); },
                           .openGl =
                               [&] {
                                   return GlSurface::create(eglTargetFor(display, window),
                                                            options.resetStatus);
                               },
                           .cpu =
                               [&] {
                                   return CpuSurface::create(
                                       {.display = display, .window = window, .ending = ending});
                               }});
    };
}

void WindowWatch::setGone() {
    if (std::exchange(gone_, true)) return;
    mapped_ = false;
    delegate_.visibilityChanged();
    delegate_.gone();
}

void WindowWatch::setCovered(bool covered) {
    if (std::exchange(covered_, covered) != covered) delegate_.visibilityChanged();
}

void WindowWatch::handle(const xcb_generic_event_t& event) {
    switch (typeOf(event)) {
        case XCB_CONFIGURE_NOTIFY: {
            const auto& e = as<xcb_configure_notify_event_t>(event);
            // The place is relative to the parent, unless a window manager sent the event.
            moved({geometry_.topLeft(), QSize(e.width, e.height)});
            break;
        }
        case XCB_EXPOSE: {
            const auto& e = as<xcb_expose_event_t>(event);
            delegate_.exposed({e.x, e.y, e.width, e.height});
            break;
        }
        case XCB_VISIBILITY_NOTIFY:
            // No other event reports that the window's parent is mapped.
            mapped_ = true;
            obscured_ =
                as<xcb_visibility_notify_event_t>(event).state == XCB_VISIBILITY_FULLY_OBSCURED;
            delegate_.visibilityChanged();
            break;
        case XCB_MAP_NOTIFY:
            mapped_ = true;
            delegate_.visibilityChanged();
            break;
        case XCB_UNMAP_NOTIFY:
            mapped_ = false;
            delegate_.visibilityChanged();
            break;
        case XCB_DESTROY_NOTIFY:
            setGone();
            break;
        default:
            break;
    }
}

void WindowWatch::moved(const QRect& geometry) {
    const QRect before = std::exchange(geometry_, geometry);
    findPlace();
    if (before != geometry_) delegate_.geometryChanged();
}

void WindowWatch::findPlace() {
    EventConnection& events = system_.events();
    if (const auto corner = events.connection().cornerOf(window_, root_)) geometry_.moveTo(*corner);
    events.readSoon();
}

namespace {

// A screen's upper left corner has the same number in points and in pixels.
QRectF pixelsOf(const QScreen& screen) {
    const QRectF points = screen.geometry();
    return {points.topLeft(), points.size() * screen.devicePixelRatio()};
}

}  // namespace

QScreen* screenUnderPixels(const QRect& rect) {
    return screenWithMost(QRectF(rect), pixelsOf);
}

QRectF pixelsToQt(const QRect& rect) {
    const QScreen* const on = screenUnderPixels(rect);
    if (!on) return rect;
    // Within a screen, pixels are points times the screen's scale.
    const QPointF corner = on->geometry().topLeft();
    const double scale = on->devicePixelRatio();
    return {corner + (QPointF(rect.topLeft()) - corner) / scale, QSizeF(rect.size()) / scale};
}

}  // namespace platform
