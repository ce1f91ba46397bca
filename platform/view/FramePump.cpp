// SPDX-License-Identifier: MIT
#include "platform/view/FramePump.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/time/Require.h"

namespace platform {

namespace {
constexpr double kNever = std::numeric_limits<double>::infinity();
// A frame wanted this share of a beat early counts as on the beat.
constexpr double kNearBeat = 0.4;
// A frame wanted this share of a beat after a beat belongs to that beat. The timer fires a little
// late, and a wish that is counted from then would otherwise wait for the beat after.
constexpr double kBehindBeat = 0.05;
}  // namespace

FramePump::FramePump(MediaClock& clock, FrameSink& sink, Build build)
    : clock_(clock), sink_(sink), build_(std::move(build)), due_(kNever), last_(-kNever) {
    setInterval(interval_);
}

void FramePump::setInterval(double seconds) {
    require(seconds > 0.0);
    if (timer_.isValid() && interval_ == seconds) return;
    interval_ = seconds;
    timer_ = Timer(clock_, {.interval = seconds, .repeats = true}, [this] { tick(); });
    schedule(due_);
}

void FramePump::setVisible(bool visible) {
    if (visible_ == visible) return;
    visible_ = visible;
    if (visible) {
        request();
    } else {
        schedule(kNever);
    }
}

void FramePump::setReady(bool ready) {
    if (ready_ == ready) return;
    ready_ = ready;
    // A taker with a rhythm of its own sets the beat. Its frames would otherwise wait for the
    // pump's next beat and come late.
    const double now = clock_.now();
    if (ready && due_ < now + kNearBeat * interval_) due_ = now;
    // A frame that is due is built at once: the timer would wake the event loop once more.
    if (ready && due_ <= now && !building_) return tick();
    timer_.fireNextAt(ready ? due_ : kNever);
}

void FramePump::request() {
    requested_ = true;
    if (visible_ && !building_) schedule(std::min(due_, clock_.now()));
}

double FramePump::beatFrom(double time) const {
    // After a pause there is no beat to keep: the frame is built now.
    if (time >= last_ + 2.0 * interval_ && time <= clock_.now()) return clock_.now();
    if (!std::isfinite(last_)) return std::max(time, clock_.now());
    const double beats = std::ceil((time - last_) / interval_ - kBehindBeat);
    return last_ + std::max(beats, 1.0) * interval_;
}

void FramePump::schedule(double wanted) {
    due_ = std::isfinite(wanted) ? beatFrom(wanted) : kNever;
    timer_.fireNextAt(ready_ ? due_ : kNever);
}

void FramePump::tick() {
    const double now = clock_.now();
    // A frame that is late by less than one beat keeps the beat.
    last_ = now - due_ < interval_ ? due_ : now;
    requested_ = false;
    building_ = true;
    const double next = build_(frame_, now);
    building_ = false;
    sink_.submit(frame_);
    schedule(requested_ ? now : next);
}

}  // namespace platform
