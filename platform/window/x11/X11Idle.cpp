// SPDX-License-Identifier: MIT
#include "platform/window/x11/X11Idle.h"

#include <xcb/screensaver.h>

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

// A property of the window that xscreensaver keeps while it runs.
constexpr std::string_view kSaverVersion = "_SCREENSAVER_VERSION";
constexpr double kMillisecond = 0.001;  // seconds

class ServerQuestion final : public IdleQuestion {
  public:
    explicit ServerQuestion(const RootWatch& root) : root_(root) {}

    std::optional<double> sinceInput() override {
        const auto reply =
            answer(root_.get(), xcb_screensaver_query_info(root_.get(), root_.root()),
                   xcb_screensaver_query_info_reply);
        root_.readSoon();
        if (!reply) return std::nullopt;
        return reply->ms_since_user_input * kMillisecond;
    }

    bool isSaverThere() override {
        const auto tree =
            answer(root_.get(), xcb_query_tree(root_.get(), root_.root()), xcb_query_tree_reply);
        if (!tree) return false;
        const xcb_window_t* const first = xcb_query_tree_children(tree.get());
        const xcb_atom_t name = root_.connection().atom(kSaverVersion);
        // All questions go out before the first answer is awaited.
        std::vector<xcb_get_property_cookie_t> cookies;
        for (int i = 0; i < tree->children_len; ++i)
            cookies.push_back(
                xcb_get_property(root_.get(), 0, first[i], name, XCB_GET_PROPERTY_TYPE_ANY, 0, 0));
        bool there = false;
        for (const xcb_get_property_cookie_t cookie : cookies) {
            const auto reply = answer(root_.get(), cookie, xcb_get_property_reply);
            if (reply && reply->type != XCB_NONE) there = true;
        }
        root_.readSoon();
        return there;
    }

  private:
    const RootWatch& root_;
};

}  // namespace

std::unique_ptr<IdleQuestion> idleQuestion(const RootWatch& root) {
    if (!root.isAlive()) return nullptr;
    const auto* const extension = xcb_get_extension_data(root.get(), &xcb_screensaver_id);
    root.readSoon();
    if (!extension || !extension->present) return nullptr;
    return std::make_unique<ServerQuestion>(root);
}

X11Idle::X11Idle(MediaClock& clock, std::unique_ptr<IdleQuestion> question, double seconds,
                 IdleAction action)
    : clock_(clock),
      question_(std::move(question)),
      seconds_(seconds),
      action_(std::move(action)),
      lookedAt_(clock.now()) {
    lookIn(seconds_ - question_->sinceInput().value_or(0.0));
}

void X11Idle::lookIn(double seconds) {
    timer_ = Timer(clock_, {.interval = std::max(seconds, kMillisecond)}, [this] { look(); });
}

void X11Idle::look() {
    const double now = clock_.now();
    const double passed = now - std::exchange(lookedAt_, now);
    const std::optional<double> since = question_->sinceInput();
    if (!since) return lookIn(seconds_);
    const bool resumed = idle_ && *since < passed;
    const bool idles = (!idle_ || resumed) && *since >= seconds_ && !question_->isSaverThere();
    idle_ = idles || (idle_ && !resumed);
    lookIn(*since < seconds_ ? seconds_ - *since : seconds_);
    // The action may drop this.
    const IdleAction action = action_;
    if (resumed) action(false);
    if (idles) action(true);
}

}  // namespace platform
