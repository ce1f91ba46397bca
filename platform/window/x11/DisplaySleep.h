// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/time/Timer.h"
#include "platform/window/x11/Xcb.h"

namespace platform {

// Asks a server whether its display is asleep, without waiting for the answer. Main thread.
class DisplaySleepQuestion {
  public:
    virtual ~DisplaySleepQuestion() = default;
    // Whether the server supports the question.
    [[nodiscard]] virtual bool canAsk() = 0;
    virtual void ask() = 0;
    // The answer to the last question, once; none while there is no answer.
    [[nodiscard]] virtual std::optional<bool> answer() = 0;
};

// The question to an X server. The caller owns the result; the connection outlives it.
// Reading an answer may fetch events without waking the event loop; `afterReading` is
// called then.
[[nodiscard]] std::unique_ptr<DisplaySleepQuestion> dpmsQuestion(
    xcb_connection_t* connection, std::function<void()> afterReading = {});

// Checks at intervals whether the display sleeps, since no server reports it. Rests at
// first. Main thread.
class DisplaySleep {
  public:
    // Calls the action each time the display falls asleep or wakes up.
    DisplaySleep(MediaClock& clock, std::unique_ptr<DisplaySleepQuestion> question,
                 std::function<void(bool asleep)> action);

    // Starts checking.
    void wake();
    // Stops checking; for the time without a user of the result. The display counts as
    // awake.
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
