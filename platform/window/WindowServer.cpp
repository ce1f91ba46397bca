// SPDX-License-Identifier: MIT
#include "platform/window/WindowServer.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/time/Require.h"
#include "platform/window/Window.h"
#include "platform/window/WindowCore.h"
#include "platform/window/WindowSystem.h"

namespace platform {

namespace {

std::map<std::int32_t, WindowServer*>& servers() {
    static std::map<std::int32_t, WindowServer*> all;
    return all;
}

std::int32_t nextNumber() {
    static std::int32_t last = 0;
    return ++last;
}

}  // namespace

WindowServer::WindowServer(MediaClock& clock, WindowServerOptions options)
    : clock_(clock), options_(std::move(options)), number_(nextNumber()) {
    require(options_.system != nullptr);
    servers()[number_] = this;
    if (ScreenSource* const source = system().screenSource()) ScreenSource::use(source);
}

WindowServer::~WindowServer() {
    if (system().screenSource()) ScreenSource::use(nullptr);
    servers().erase(number_);
}

bool WindowServer::isConnected() const {
    return system().isConnected();
}

void WindowServer::onConnectionLost(std::function<void()> action) {
    system().onLost(std::move(action));
}

void WindowServer::added(WindowCore& window) {
    windows_.push_back(&window);
    if (windows_.size() == 1) system().watch([this](bool asleep) { setDisplayAsleep(asleep); });
}

void WindowServer::removed(WindowCore& window) {
    std::erase(windows_, &window);
    if (!windows_.empty()) return;
    system().stopWatching();
    asleep_ = false;
}

void WindowServer::setPace(int divisor) {
    require(divisor > 0);
    if (std::exchange(pace_, divisor) == divisor) return;
    for (WindowCore* window : windows_)
        window->geometryChanged();
}

void WindowServer::limitWork(const std::optional<WorkBudget::Options>& options,
                             std::function<double()> cpuSeconds) {
    newMeasure_ = Timer();
    budget_.reset();
    if (options) budget_.emplace(*options);
    cpuSeconds_ = std::move(cpuSeconds);
    take({});
}

void WindowServer::frameBuilt(double time) {
    if (!budget_ || !budget_->wants(time)) return;
    const bool isSoftware = std::any_of(
        windows_.begin(), windows_.end(),
        [](const WindowCore* window) { return window->drawing && window->drawing->isSoftware(); });
    if (!isSoftware || !budget_->used(time, cpuSeconds_())) return;
    // Windows cannot change their rhythm while a frame is built.
    newMeasure_ = Timer(clock_, {.interval = 0.0}, [this] { take(budget_->measure()); });
}

void WindowServer::take(const WorkMeasure& measure) {
    if (std::exchange(measure_, measure) == measure) return;
    for (WindowCore* window : windows_)
        window->geometryChanged();
}

void WindowServer::setDisplayAsleep(bool asleep) {
    asleep_ = asleep;
    for (WindowCore* window : windows_)
        window->updateWanted();
}

void WindowServer::setNeedsFrames() {
    for (WindowCore* window : windows_)
        if (window->drawing) window->drawing->requestFrame();
}

void WindowServer::cameToFront(Window& window) {
    dropped(window);
    const auto above =
        std::upper_bound(shown_.begin(), shown_.end(), window.level(),
                         [](int level, const Window* other) { return level < other->level(); });
    for (auto other = shown_.insert(above, &window) + 1; other != shown_.end(); ++other)
        (*other)->raise();
}

void WindowServer::becameKey(Window& window) {
    key_ = &window;
}

void WindowServer::dropped(Window& window) {
    std::erase(shown_, &window);
    if (key_ == &window) key_ = nullptr;
}

std::int32_t WindowServer::defaultNumber() {
    std::int32_t number = 0;
    for (const auto& [each, server] : servers())
        if (server->isConnected()) number = each;
    return number;
}

WindowServer* WindowServer::numbered(std::int32_t number) {
    const auto found = servers().find(number);
    return found == servers().end() ? nullptr : found->second;
}

}  // namespace platform
