// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

namespace platform {

struct AnimationGroupOptions {
    double duration = 0.25;  // seconds, of each fade
    // On the main thread, after the last of them; at once when there is none.
    std::function<void()> completion;
};

// Fades of several windows with one completion: make a group, pass it to
// Window::fadeTo(), drop it. Running fades share ownership. Main thread.
class AnimationGroup {
  public:
    explicit AnimationGroup(AnimationGroupOptions options);
    ~AnimationGroup();
    AnimationGroup(const AnimationGroup&) = delete;
    AnimationGroup& operator=(const AnimationGroup&) = delete;

    [[nodiscard]] double duration() const { return duration_; }

    // Held by each fade while it runs; the last one to let it go completes the
    // group.
    using Token = std::shared_ptr<void>;
    [[nodiscard]] Token token() const { return token_; }

  private:
    double duration_;
    Token token_;
};

}  // namespace platform
