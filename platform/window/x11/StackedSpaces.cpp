// SPDX-License-Identifier: MIT
#include "platform/window/x11/StackedSpaces.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

StackedSpaces::StackedSpaces(StackKeeper& stack, LevelOf levelOf)
    : stack_(stack), levelOf_(std::move(levelOf)) {}

StackedSpaces::~StackedSpaces() {
    for (auto& [id, space] : spaces_) {
        space.shown = false;
        update(space);
    }
}

std::uint64_t StackedSpaces::create() {
    spaces_[++last_] = {};
    return last_;
}

void StackedSpaces::destroy(std::uint64_t space) {
    setShown(space, false);
    spaces_.erase(space);
}

void StackedSpaces::setLevel(std::uint64_t space, int level) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end() || std::exchange(found->second.level, level) == level) return;
    update(found->second);
}

void StackedSpaces::setShown(std::uint64_t space, bool shown) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end() || std::exchange(found->second.shown, shown) == shown) return;
    update(found->second);
}

void StackedSpaces::add(std::uint64_t number, std::uint64_t space) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end() || number == 0 || number > std::numeric_limits<xcb_window_t>::max())
        return;
    const auto window = static_cast<xcb_window_t>(number);
    auto& windows = found->second.windows;
    if (std::find(windows.begin(), windows.end(), window) == windows.end())
        windows.push_back(window);
    update(found->second, window);
}

void StackedSpaces::forget(xcb_window_t window) {
    for (auto& [id, space] : spaces_)
        std::erase(space.windows, window);
    stack_.release(window);
}

void StackedSpaces::update(const Space& space) {
    for (const xcb_window_t window : space.windows)
        update(space, window);
}

void StackedSpaces::update(const Space& space, xcb_window_t window) {
    if (space.shown) {
        stack_.keep(window, {.window = levelOf_(window), .space = space.level});
    } else {
        stack_.release(window);
    }
}

}  // namespace platform
