// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/time/Timer.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// How a server is asked whether its display is asleep, without waiting for the
// answer.
class DisplaySleepQuestion {
  public:
    virtual ~DisplaySleepQuestion() = default;
    // Whether there is any sense in asking.
    [[nodiscard]] virtual bool canAsk() = 0;
    virtual void ask() = 0;
    // To what was asked last, once; none as long as there is no answer.
    [[nodiscard]] virtual std::optional<bool> answer() = 0;
};

// The question as an X server understands it. The connection outlives it. An
// answer that is read may bring events along, which wake nobody; `afterReading` is
// called then.
[[nodiscard]] std::unique_ptr<DisplaySleepQuestion> dpmsQuestion(
    xcb_connection_t* connection, std::function<void()> afterReading = {});

// Looks every so often whether the display sleeps, since no server tells. Rests
// at first. Main thread.
class DisplaySleep {
  public:
    // Calls the action each time that the display falls asleep or wakes up.
    DisplaySleep(MediaClock& clock, std::unique_ptr<DisplaySleepQuestion> question,
                 std::function<void(bool asleep)> action);

    // Begins to look.
    void wake();
    // Looks no more: for as long as it matters to nobody. The display counts as awake.
    void rest();

  private:
    void look();
    void listen();

    MediaClock& clock_;
    const std::unique_ptr<DisplaySleepQuestion> question_;
    const std::function<void(bool)> action_;
    bool asleep_ = false;
    Timer timer_;
};

}  // namespace platform
