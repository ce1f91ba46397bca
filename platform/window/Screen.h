// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/time/Observers.h"

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
    // The screen with most of a rectangle, in the space of frame; the main screen for a
    // rectangle outside all screens.
    [[nodiscard]] static std::optional<Screen> under(const QRectF& rect);

    friend bool operator==(const Screen&, const Screen&) = default;
};

// The source of the screens where Qt does not know them: a window system on which Qt has no
// windows, or windows of other scales. Its maker owns it. Main thread.
class ScreenSource {
  public:
    virtual ~ScreenSource() = default;

    [[nodiscard]] virtual std::vector<Screen> screens() const = 0;
    [[nodiscard]] virtual Observation observeScreens(std::function<void()> action) = 0;

    // Makes Screen and new observers ask this source until the next call; nullptr means Qt.
    // The source outlives its use.
    static void use(ScreenSource* source);
};
// The given screens, without any that has the rectangle of an earlier screen, as a mirror has.
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
