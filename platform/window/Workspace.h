// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <cstdint>
#include <functional>
#include <optional>

#include "platform/time/Observers.h"

namespace platform {

// A program that has a window, as far as it can be told from outside.
struct RunningApplication {
    std::uint32_t window = 0;   // the one it was found by
    std::uint32_t process = 0;  // 0 where it is not told
    friend bool operator==(const RunningApplication&, const RunningApplication&) = default;
};

// The desktop for an effect that lies over it: who has the keyboard, the pointer,
// and whether there is anything to lie over. Its user keeps it alive. Main thread.
class Workspace {
  public:
    virtual ~Workspace() = default;

    // The application that has the keyboard; none where none has.
    [[nodiscard]] virtual std::optional<RunningApplication> frontmostApplication() = 0;
    // Brings its window to the front and gives it the keyboard; nothing happens
    // where it has ended.
    virtual void activate(const RunningApplication& application) = 0;
    // Gives the keyboard to this program's key window, whoever has it. Needs an
    // application object: without one the process stops.
    virtual void activateIgnoringOthers() = 0;

    // Hidings are counted, as showings are. The pointer is back when the program
    // ends, however it ends.
    virtual void hideCursor() = 0;
    virtual void unhideCursor() = 0;
    // In points, as in Screen::frame.
    [[nodiscard]] virtual QPointF mouseLocation() const = 0;

    // Whether windows can be seen through: a compositor runs.
    [[nodiscard]] virtual bool isComposited() const = 0;
    // Whether a screen saver or lock covers the screens.
    [[nodiscard]] virtual bool isSaverActive() const = 0;

    enum class Change { FrontmostApplication, Compositor, Saver };
    [[nodiscard]] virtual Observation observe(std::function<void(Change)> action) = 0;
};

}  // namespace platform
