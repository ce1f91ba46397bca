// SPDX-License-Identifier: MIT
#include "platform/desktop/WindowServer.h"

#include <QString>
#include <algorithm>
#include <utility>

#include "platform/desktop/EventConnection.h"
#include "platform/desktop/Window.h"
#include "platform/desktop/WindowCore.h"
#include "platform/time/Require.h"

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

}  // namespace

WindowServer::WindowServer(MediaClock& clock, WindowServerOptions options)
    : clock_(clock),
      options_(std::move(options)),
      events_(std::make_unique<EventConnection>(options_.display)) {
    if (!isConnected()) return;
    sleep_.emplace(clock_, dpmsQuestion(events_->get()),
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

void WindowServer::dropped(Window& window) {
    std::erase(shown_, &window);
}

}  // namespace platform
