// SPDX-License-Identifier: MIT
#include "platform/view/AnimationGroup.h"

#include <utility>

namespace platform {

namespace {

struct Completion {
    explicit Completion(std::function<void()> a) : action(std::move(a)) {}
    ~Completion() {
        if (action) action();
    }
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;
    std::function<void()> action;
};

}  // namespace

AnimationGroup::AnimationGroup(AnimationGroupOptions options)
    : duration_(options.duration),
      token_(std::make_shared<Completion>(std::move(options.completion))) {}

AnimationGroup::~AnimationGroup() = default;

}  // namespace platform
