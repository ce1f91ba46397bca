// SPDX-License-Identifier: MIT
#include "platform/window/WindowServer.h"

#include <QString>
#include <algorithm>
#include <map>
#include <utility>

#include "platform/time/Require.h"
#include "platform/window/Window.h"
#include "platform/window/WindowCore.h"
#include "platform/window/x11/EventConnection.h"
#include "platform/window/x11/OverlaySpaces.h"

namespace platform {

namespace {

// Qt says this as its own connection breaks, and then calls exit().
constexpr const char* kQtLament = "The X11 connection broke";

EventConnection* listening = nullptr;
QtMessageHandler handlerBefore = nullptr;

void keepBackLament(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (listening && message.startsWith(QLatin1String(kQtLament))) {
        listening->lost();
        return;
    }
    handlerBefore(type, context, message);
}

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
    : clock_(clock),
      options_(std::move(options)),
      events_(std::make_unique<EventConnection>(options_.display)),
      number_(nextNumber()) {
    servers()[number_] = this;
    if (!isConnected()) return;
    sleep_.emplace(clock_, dpmsQuestion(events_->get(), [this] { events_->readSoon(); }),
                   [this](bool asleep) { setDisplayAsleep(asleep); });
    coverage_.emplace(
        clock_, options_.display,
        CoverageWatch::Actions{.windows =
                                   [this] {
                                       std::vector<std::uint32_t> mapped;
                                       for (const WindowCore* window : windows_)
                                           if (window->drawing && window->drawing->isMapped())
                                               mapped.push_back(window->drawing->id());
                                       return asleep_ ? std::vector<std::uint32_t>() : mapped;
                                   },
                               .tell =
                                   [this](std::uint32_t id, bool covered) {
                                       for (WindowCore* window : windows_)
                                           if (window->drawing && window->drawing->id() == id)
                                               window->setCovered(covered);
                                   }});
}

WindowServer::~WindowServer() {
    servers().erase(number_);
    if (listening != events_.get()) return;
    listening = nullptr;
    qInstallMessageHandler(std::exchange(handlerBefore, nullptr));
}

bool WindowServer::isConnected() const {
    return events_->isAlive();
}

void WindowServer::onConnectionLost(std::function<void()> action) {
    events_->onLost(std::move(action));
    if (!listening) handlerBefore = qInstallMessageHandler(keepBackLament);
    listening = events_.get();
}

void WindowServer::added(WindowCore& window) {
    windows_.push_back(&window);
    if (windows_.size() > 1 || !sleep_) return;
    sleep_->wake();
    coverage_->wake();
}

void WindowServer::removed(WindowCore& window) {
    std::erase(windows_, &window);
    if (!windows_.empty() || !sleep_) return;
    sleep_->rest();
    coverage_->rest();
    asleep_ = false;
}

void WindowServer::setPace(int divisor) {
    require(divisor > 0);
    if (std::exchange(pace_, divisor) == divisor) return;
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

void WindowServer::keysMoved() {
    if (root_) root_->keysMoved();
}

void WindowServer::destroyed(std::uint32_t windowNumber) {
    if (spaces_) spaces_->forget(windowNumber);
    if (stack_) stack_->release(windowNumber);
}

int WindowServer::levelOf(std::uint32_t windowNumber) const {
    const auto found = std::find_if(shown_.begin(), shown_.end(), [=](const Window* window) {
        return window->windowNumber() == std::int64_t{windowNumber};
    });
    return found == shown_.end() ? 0 : (*found)->level();
}

RootWatch& WindowServer::root() {
    if (!root_) root_ = std::make_unique<RootWatch>(options_.display);
    return *root_;
}

StackKeeper& WindowServer::stack() {
    if (!stack_) stack_ = std::make_unique<StackKeeper>(clock_, root());
    return *stack_;
}

OverlaySpaces& WindowServer::spaces() {
    if (!spaces_)
        spaces_ = std::make_unique<OverlaySpaces>(
            stack(), [this](std::uint32_t window) { return levelOf(window); });
    return *spaces_;
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
