// SPDX-License-Identifier: MIT
#include "platform/window/x11/StackKeeper.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace platform {

namespace {

constexpr double kPause = 0.1;
// A window that covers ours this often within this time will go on doing so.
constexpr double kStubborn = 1.0;
constexpr int kOftenEnough = 3;

}  // namespace

StackKeeper::StackKeeper(MediaClock& clock, RootWatch& root)
    : clock_(clock), root_(root), looked_(-std::numeric_limits<double>::infinity()) {
    changes_ = root.observe([this](RootWatch::Change change) {
        if (change == RootWatch::Change::Stack || change == RootWatch::Change::Saver) changed();
    });
}

bool StackKeeper::isKept(xcb_window_t window) const {
    return std::any_of(kept_.begin(), kept_.end(),
                       [window](const Kept& kept) { return kept.window == window; });
}

void StackKeeper::keep(xcb_window_t window, StackRank rank) {
    release(window);
    const auto above = std::upper_bound(
        kept_.begin(), kept_.end(), rank,
        [](const StackRank& value, const Kept& kept) { return value < kept.rank; });
    kept_.insert(above, {window, rank});
    changed();
}

void StackKeeper::release(xcb_window_t window) {
    std::erase_if(kept_, [window](const Kept& kept) { return kept.window == window; });
}

void StackKeeper::setHeldBack(bool heldBack) {
    if (std::exchange(heldBack_, heldBack) == heldBack) return;
    changed();
}

void StackKeeper::changed() {
    if (kept_.empty() || heldBack_ || later_.isValid()) return;
    const double wait = looked_ + kPause - clock_.now();
    if (wait <= 0.0) return look();
    later_ = Timer(clock_, {.interval = wait}, [this] { look(); });
}

void StackKeeper::look() {
    later_ = Timer();
    if (kept_.empty() || heldBack_ || !root_.isAlive() || root_.isSaverOn()) return;
    looked_ = clock_.now();
    const std::vector<xcb_window_t> shown = shownFromOurs();
    const xcb_window_t covers = intruder(shown);
    // The stubborn window no longer covers ours.
    if (rival_.times > kOftenEnough && covers != rival_.window) rival_ = {};
    if (covers != 0 ? !givesWay(covers) : !isInOrder(shown)) raiseAll();
    root_.readSoon();
}

std::vector<xcb_window_t> StackKeeper::shownFromOurs() {
    const auto tree =
        answer(root_.get(), xcb_query_tree(root_.get(), root_.root()), xcb_query_tree_reply);
    if (!tree) return {};
    const xcb_window_t* const all = xcb_query_tree_children(tree.get());
    const xcb_window_t* const end = all + xcb_query_tree_children_length(tree.get());
    std::erase_if(kept_, [=](const Kept& kept) { return std::find(all, end, kept.window) == end; });
    const xcb_window_t* const first =
        std::find_if(all, end, [this](xcb_window_t window) { return isKept(window); });
    std::vector<xcb_get_window_attributes_cookie_t> asked;
    for (const xcb_window_t* window = first; window != end; ++window)
        asked.push_back(xcb_get_window_attributes(root_.get(), *window));
    std::vector<xcb_window_t> shown;
    for (std::size_t i = 0; i < asked.size(); ++i) {
        // Some of the windows may be gone meanwhile.
        const auto look = answer(root_.get(), asked[i], xcb_get_window_attributes_reply);
        if (look && look->map_state == XCB_MAP_STATE_VIEWABLE &&
            look->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT)
            shown.push_back(first[i]);
    }
    return shown;
}

xcb_window_t StackKeeper::intruder(const std::vector<xcb_window_t>& shown) const {
    const auto ours = std::find_if(shown.begin(), shown.end(),
                                   [this](xcb_window_t window) { return isKept(window); });
    xcb_window_t highest = 0;
    for (auto window = ours; window != shown.end(); ++window)
        if (!isKept(*window)) highest = *window;
    return highest;
}

bool StackKeeper::isInOrder(const std::vector<xcb_window_t>& shown) const {
    auto from = shown.begin();
    for (const Kept& kept : kept_) {
        if (std::find(shown.begin(), shown.end(), kept.window) == shown.end()) continue;
        from = std::find(from, shown.end(), kept.window);
        if (from == shown.end()) return false;
    }
    return true;
}

bool StackKeeper::givesWay(xcb_window_t intruder) {
    const bool same = rival_.window == intruder;
    if (same && rival_.times > kOftenEnough) return true;
    const double now = clock_.now();
    const bool again = same && now - rival_.last < kStubborn;
    rival_ = {.window = intruder, .times = again ? rival_.times + 1 : 1, .last = now};
    return rival_.times > kOftenEnough;
}

void StackKeeper::raiseAll() {
    const std::uint32_t above = XCB_STACK_MODE_ABOVE;
    for (const Kept& kept : kept_)
        xcb_configure_window(root_.get(), kept.window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(root_.get());
}

}  // namespace platform
