// SPDX-License-Identifier: MIT
#include "platform/window/x11/OverlaySpaces.h"

#include <algorithm>
#include <utility>

namespace platform {

OverlaySpaces::OverlaySpaces(StackKeeper& stack, LevelOf levelOf)
    : stack_(stack), levelOf_(std::move(levelOf)) {}

OverlaySpaces::~OverlaySpaces() {
    for (auto& [id, space] : spaces_) {
        space.shown = false;
        update(space);
    }
}

std::uint64_t OverlaySpaces::create() {
    spaces_[++last_] = {};
    return last_;
}

void OverlaySpaces::destroy(std::uint64_t space) {
    setShown(space, false);
    spaces_.erase(space);
}

void OverlaySpaces::setLevel(std::uint64_t space, int level) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end() || std::exchange(found->second.level, level) == level) return;
    update(found->second);
}

void OverlaySpaces::setShown(std::uint64_t space, bool shown) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end() || std::exchange(found->second.shown, shown) == shown) return;
    update(found->second);
}

void OverlaySpaces::add(xcb_window_t window, std::uint64_t space) {
    const auto found = spaces_.find(space);
    if (found == spaces_.end()) return;
    auto& windows = found->second.windows;
    if (std::find(windows.begin(), windows.end(), window) == windows.end())
        windows.push_back(window);
    update(found->second, window);
}

void OverlaySpaces::forget(xcb_window_t window) {
    for (auto& [id, space] : spaces_)
        std::erase(space.windows, window);
    stack_.release(window);
}

void OverlaySpaces::update(const Space& space) {
    for (const xcb_window_t window : space.windows)
        update(space, window);
}

void OverlaySpaces::update(const Space& space, xcb_window_t window) {
    if (space.shown) {
        stack_.keep(window, {.window = levelOf_(window), .space = space.level});
    } else {
        stack_.release(window);
    }
}

}  // namespace platform
