// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace platform {

// One display as it is now: a plain value, not a handle. Main thread, under a
// QGuiApplication.
struct Screen {
    QString name;               // the connector's, stable while it stays connected
    QRectF frame;               // points, y up; the main screen's lower left corner is the origin
    double scale = 1.0;         // pixels per point
    double refreshRate = 60.0;  // frames per second

    // All displays, in the system's order; none without a display.
    [[nodiscard]] static std::vector<Screen> all();
    [[nodiscard]] static std::optional<Screen> main();

    friend bool operator==(const Screen&, const Screen&) = default;
};

// The screens without those that show the rectangle of an earlier one, as mirrored displays
// do.
[[nodiscard]] std::vector<Screen> distinctRectangles(std::vector<Screen> screens);

// Calls an action on the main thread, once for each turn of the event loop in which any
// screen came, went or changed. Dropping the observer ends the calls.
class ScreenObserver {
  public:
    explicit ScreenObserver(std::function<void()> action);
    ~ScreenObserver();
    ScreenObserver(const ScreenObserver&) = delete;
    ScreenObserver& operator=(const ScreenObserver&) = delete;

  private:
    class Listener;
    std::unique_ptr<Listener> listener_;
};

}  // namespace platform
