// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/time/Observers.h"
#include "platform/view/WindowRef.h"

namespace platform {

// A program that has a window, identified from outside. A plain value.
struct RunningApplication {
    WindowRef window;           // the window that identifies the program
    std::uint32_t process = 0;  // 0 where unknown
    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

// The desktop under an effect: the keyboard's owner, the pointer, and whether windows can
// be seen through. Its user keeps it alive. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;

    // The application that has the keyboard; none without one.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;
    // Brings the application's window to the front and gives it the keyboard. Does nothing
    // where the application has ended.
    virtual void activate(const RunningApplication& application) = 0;
    // Takes the keyboard for this program's key window from any other program. Needs an
    // application object: without one the process stops.
    virtual void activateIgnoringOthers() = 0;

    // Hides the pointer. Each call needs one call that shows it. The pointer returns when
    // the program ends in any way.
    virtual void hideCursor() = 0;
    virtual void unhideCursor() = 0;
    // The pointer's place in points, as in Screen::frame.
    [[nodiscard]] virtual QPointF mouseLocation() const = 0;

    // Whether a compositor runs, so that windows can be see-through.
    [[nodiscard]] virtual bool isComposited() const = 0;
    // Whether a screen saver or lock covers the screens.
    [[nodiscard]] virtual bool isSaverActive() const = 0;

    enum class Change { FrontmostApplication, Compositor, Saver };
    [[nodiscard]] virtual Observation observe(std::function<void(Change)> action) = 0;
};

}  // namespace platform
