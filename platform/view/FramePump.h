// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"
#include "platform/view/Frame.h"

namespace platform {

// Decides when a window's frames are built: at the display's rhythm while the
// picture changes, at the rhythm's next beat after something was changed by
// hand, not before the next change while it stands still, and never while
// nobody could see it. Main thread; allocates nothing per frame.
class FramePump {
  public:
    // Fills the frame as it is at the clock's `time` and returns the time from
    // which it looks different.
    using Build = std::function<double(Frame& frame, double time)>;

    // The sink must outlive the pump. Starts invisible.
    FramePump(MediaClock& clock, FrameSink& sink, Build build);

    // Seconds from frame to frame at most as fast; > 0.
    void setInterval(double seconds);

    void setVisible(bool visible);

    // Whether whoever shows the frames takes another one; true at first. While
    // not, frames wait.
    void setReady(bool ready);

    // Something looks different.
    void request();

  private:
    void tick();
    void schedule(double wanted);
    // The first beat at or after `time` that is not the last frame's.
    [[nodiscard]] double beatFrom(double time) const;

    MediaClock& clock_;
    FrameSink& sink_;
    const Build build_;
    double interval_ = 1.0 / 60.0;
    bool visible_ = false;
    bool ready_ = true;
    bool requested_ = false;
    bool building_ = false;
    double due_;   // of the timer
    double last_;  // beat of the last frame
    Frame frame_;
    Timer timer_;
};

}  // namespace platform
