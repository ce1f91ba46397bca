// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractNativeEventFilter>
#include <QByteArray>
#include <cstdint>

#include "platform/time/Timer.h"
#include "platform/window/x11/EventConnection.h"

namespace platform {

// Follows the server's announcements of another size, which Qt's connection receives before
// the mouse movements that come of it. A nested server (Xephyr 21.1) that changes twice at
// once answers Qt's question for the screens with the old ones; the watch then has the server
// look again, upon which Qt is told. The X11System owns it. Main thread.
class ScreenWatch final : public QAbstractNativeEventFilter {
  public:
    // Both outlive the watch.
    ScreenWatch(MediaClock& clock, EventConnection& events);
    ~ScreenWatch() override;
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;

    // The number of announcements so far.
    [[nodiscard]] std::uint64_t announced() const { return announced_; }

    bool nativeEventFilter(const QByteArray& type, void* message, qintptr* result) override;

  private:
    void compare();

    MediaClock& clock_;
    EventConnection& events_;
    int announcement_ = 0;  // the event's number; 0 without the extension
    int width_ = 0, height_ = 0;
    std::uint64_t announced_ = 0;
    Timer later_;
};

}  // namespace platform
