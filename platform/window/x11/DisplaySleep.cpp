// SPDX-License-Identifier: MIT
#include "platform/window/x11/DisplaySleep.h"

#include <xcb/dpms.h>
#include <xcb/xcbext.h>

#include <utility>

namespace platform {

namespace {

// The interval while the display is awake or asleep, in seconds: a user waits for a display
// that wakes up.
constexpr double kAwake = 2.0;
constexpr double kAsleep = 0.5;
constexpr double kTolerance = 0.25;
// The time from a request to the check for its answer, in seconds.
constexpr double kAnswer = 0.05;

class DpmsQuestion final : public DisplaySleepQuestion {
  public:
    DpmsQuestion(xcb_connection_t* connection, std::function<void()> afterReading)
        : connection_(connection), afterReading_(std::move(afterReading)) {
        xcb_prefetch_extension_data(connection_, &xcb_dpms_id);
        xcb_flush(connection_);
    }
    bool canAsk() override {
        if (xcb_connection_has_error(connection_) != 0) return false;
        const auto* const extension = xcb_get_extension_data(connection_, &xcb_dpms_id);
        haveRead();
        return extension && extension->present;
    }
    void ask() override {
        // A request from before the rest may still be unanswered.
        if (asked_ != 0) xcb_discard_reply(connection_, asked_);
        asked_ = xcb_dpms_info(connection_).sequence;
        xcb_flush(connection_);
    }
    std::optional<bool> answer() override {
        if (asked_ == 0) return std::nullopt;
        void* found = nullptr;
        xcb_generic_error_t* error = nullptr;
        const bool here = xcb_poll_for_reply(connection_, asked_, &found, &error) != 0;
        haveRead();
        if (!here) return std::nullopt;
        asked_ = 0;
        std::free(error);
        const XcbReply<xcb_dpms_info_reply_t> reply(static_cast<xcb_dpms_info_reply_t*>(found));
        if (!reply) return std::nullopt;
        return reply->state != 0 && reply->power_level != XCB_DPMS_DPMS_MODE_ON;
    }

  private:
    void haveRead() const {
        if (afterReading_) afterReading_();
    }

    xcb_connection_t* const connection_;
    const std::function<void()> afterReading_;
    unsigned asked_ = 0;  // 0 is no request's number
};

}  // namespace

std::unique_ptr<DisplaySleepQuestion> dpmsQuestion(xcb_connection_t* connection,
                                                   std::function<void()> afterReading) {
    return std::make_unique<DpmsQuestion>(connection, std::move(afterReading));
}

DisplaySleep::DisplaySleep(MediaClock& clock, std::unique_ptr<DisplaySleepQuestion> question,
                           std::function<void(bool)> action)
    : clock_(clock), question_(std::move(question)), action_(std::move(action)) {}

void DisplaySleep::wake() {
    timer_ = Timer(clock_, {.interval = kAwake, .tolerance = kTolerance}, [this] { look(); });
}

void DisplaySleep::rest() {
    timer_ = Timer();
    asleep_ = false;
}

void DisplaySleep::look() {
    if (!question_->canAsk()) return;
    question_->ask();
    timer_ = Timer(clock_, {.interval = kAnswer}, [this] { listen(); });
}

void DisplaySleep::listen() {
    const bool asleep = question_->answer().value_or(asleep_);
    const double next = asleep ? kAsleep : kAwake;
    timer_ = Timer(clock_, {.interval = next, .tolerance = kTolerance}, [this] { look(); });
    // The action may drop this.
    if (std::exchange(asleep_, asleep) != asleep) action_(asleep);
}

}  // namespace platform
