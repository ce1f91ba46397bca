// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

#include "platform/time/Timer.h"
#include "platform/view/Frame.h"

namespace platform {

// Decides when a window's frames are built. While the picture changes: at the display's
// rhythm. After a change by hand: at the rhythm's next beat. While the picture stands still:
// at its next planned change. While nobody can see the window: never. Main thread.
// Allocates nothing per frame.
class FramePump {
  public:
    // Fills the frame for the clock's `time`, and returns the time at which the look changes
    // next.
    using Build = std::function<double(Frame& frame, double time)>;

    // The clock and the sink outlive the pump. The pump starts invisible.
    FramePump(MediaClock& clock, FrameSink& sink, Build build);

    // The shortest time between two frames, in seconds; > 0.
    void setInterval(double seconds);

    void setVisible(bool visible);

    // Whether the taker of frames accepts another frame; true at first. Frames wait while the
    // taker does not. A frame that is due then is built within the call.
    void setReady(bool ready);

    // Reports that the picture looks different.
    void request();

  private:
    void tick();
    void schedule(double wanted);
    // The first beat at or after `time`, other than the last frame's beat.
    [[nodiscard]] double beatFrom(double time) const;

    MediaClock& clock_;
    FrameSink& sink_;
    const Build build_;
    double interval_ = 1.0 / 60.0;
    bool visible_ = false;
    bool ready_ = true;
    bool requested_ = false;
    bool building_ = false;
    double due_;   // the timer's next firing
    double last_;  // the last frame's beat
    Frame frame_;
    Timer timer_;
};

}  // namespace platform
