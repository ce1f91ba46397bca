// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "platform/session/IdleWatch.h"
#include "platform/time/Timer.h"
#include "platform/window/x11/RootWatch.h"

namespace platform {

// Asks a server for the time without input, and waits for the answer. Main thread.
class IdleQuestion {
  public:
    virtual ~IdleQuestion() = default;
    // Seconds since the last input; none without an answer.
    [[nodiscard]] virtual std::optional<double> sinceInput() = 0;
    // Whether xscreensaver runs, which starts by itself.
    [[nodiscard]] virtual bool isSaverThere() = 0;
};

// The question to an X server by its screen-saver extension; null where the server does not
// have it. The caller owns the result; the root outlives it.
[[nodiscard]] std::unique_ptr<IdleQuestion> idleQuestion(const RootWatch& root);

// The time without input on an X server. The server reports no time but its own saver's, and is
// therefore asked when the time could be over. While xscreensaver runs, the user never counts as
// idle. The clock outlives the watch. Main thread.
class X11Idle final : public IdleWatch {
  public:
    // `seconds` is the time without input.
    X11Idle(MediaClock& clock, std::unique_ptr<IdleQuestion> question, double seconds,
            IdleAction action);

  private:
    void look();
    void lookIn(double seconds);

    MediaClock& clock_;
    const std::unique_ptr<IdleQuestion> question_;
    const double seconds_;
    const IdleAction action_;
    bool idle_ = false;
    double lookedAt_;  // on the clock
    Timer timer_;
};

}  // namespace platform
