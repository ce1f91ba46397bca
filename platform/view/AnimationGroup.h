// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace platform {

struct AnimationGroupOptions {
    double duration = 0.25;  // seconds, of each fade
    // Called on the main thread once the group is dropped and its last fade has ended.
    std::function<void()> completion;
};

// The fades of several windows, with one completion. A caller makes a group, passes it to
// Window::fadeTo() and drops it. Running fades share the group's token. Main thread.
class AnimationGroup {
  public:
    explicit AnimationGroup(AnimationGroupOptions options);
    ~AnimationGroup();
    AnimationGroup(const AnimationGroup&) = delete;
    AnimationGroup& operator=(const AnimationGroup&) = delete;

    [[nodiscard]] double duration() const { return duration_; }

    // The token is held by the group and by each running fade. The end of the last holder
    // completes the group.
    using Token = std::shared_ptr<void>;
    [[nodiscard]] Token token() const { return token_; }

  private:
    double duration_;
    Token token_;
};

}  // namespace platform
