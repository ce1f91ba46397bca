// SPDX-License-Identifier: MIT
#include "platform/window/x11/ScreenWatch.h"

#include <xcb/randr.h>

#include <QGuiApplication>
#include <QScreen>
#include <cmath>
#include <utility>

namespace platform {

namespace {

// The time in which Qt follows a change, in seconds.
constexpr double kQt = 0.2;

bool isTurned(std::uint8_t rotation) {
    return (rotation & (XCB_RANDR_ROTATION_ROTATE_90 | XCB_RANDR_ROTATION_ROTATE_270)) != 0;
}

}  // namespace

ScreenWatch::ScreenWatch(MediaClock& clock, EventConnection& events)
    : clock_(clock), events_(events) {
    const auto* const extension = xcb_get_extension_data(events_.get(), &xcb_randr_id);
    events_.readSoon();
    QCoreApplication* const app = QCoreApplication::instance();
    if (!app || !extension || !extension->present) return;
    announcement_ = extension->first_event + XCB_RANDR_SCREEN_CHANGE_NOTIFY;
    app->installNativeEventFilter(this);
}

// The filter's own end takes it from the application.
ScreenWatch::~ScreenWatch() = default;

bool ScreenWatch::nativeEventFilter(const QByteArray& type, void* message, qintptr*) {
    if (type != "xcb_generic_event_t") return false;
    const auto& event = *static_cast<const xcb_generic_event_t*>(message);
    if (typeOf(event) != announcement_) return false;
    const auto& change = as<xcb_randr_screen_change_notify_event_t>(event);
    width_ = change.width;
    height_ = change.height;
    if (isTurned(change.rotation)) std::swap(width_, height_);
    ++announced_;
    later_ = Timer(clock_, {.interval = kQt}, [this] { compare(); });
    return false;
}

// Only servers of one screen were seen to need it, and on hardware the look takes time.
void ScreenWatch::compare() {
    const auto screens = QGuiApplication::screens();
    if (screens.size() != 1 || !events_.isAlive()) return;
    const QSizeF known = QSizeF(screens.front()->size()) * screens.front()->devicePixelRatio();
    // Qt rounds to whole points.
    const double most = screens.front()->devicePixelRatio();
    if (std::abs(known.width() - width_) <= most && std::abs(known.height() - height_) <= most)
        return;
    const auto asked = xcb_randr_get_screen_resources(events_.get(), events_.root());
    xcb_discard_reply(events_.get(), asked.sequence);
    xcb_flush(events_.get());
}

}  // namespace platform
