// SPDX-License-Identifier: MIT
#include "platform/window/x11/X11System.h"

#include <QWindow>
#include <utility>

#include "platform/window/x11/NativeWindows.h"
#include "platform/window/x11/X11Idle.h"
#include "platform/window/x11/Xwayland.h"

namespace platform {

namespace {

EventConnection* listening = nullptr;
QtMessageHandler handlerBefore = nullptr;

void keepBackLament(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (listening && isQtsLament(message)) {
        listening->lost();
        return;
    }
    handlerBefore(type, context, message);
}

}  // namespace

bool isQtsLament(const QString& message) {
    return message.startsWith(QLatin1String("The X11 connection broke"));
}

std::optional<xcb_window_t> readWindowNumber(const QString& text) {
    bool good = false;
    const bool hex = text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
    const auto number = hex ? text.mid(2).toUInt(&good, 16) : text.toUInt(&good, 10);
    if (!good || number == 0) return std::nullopt;
    return number;
}

X11System::X11System(MediaClock& clock, const QString& display)
    : clock_(clock), display_(display), events_(display) {
    if (!isConnected()) return;
    isOnWayland_ = platform::isOnWayland(XConnection(display_));
    sleep_.emplace(clock_, dpmsQuestion(events_.get(), [this] { events_.readSoon(); }),
                   [this](bool asleep) {
                       asleep_ = asleep;
                       if (displaySlept_) displaySlept_(asleep);
                   });
    coverage_.emplace(
        clock_, display_,
        CoverageWatch::Actions{
            .windows = [this] { return asleep_ ? std::vector<xcb_window_t>() : mapped(); },
            .tell = [this](xcb_window_t id, bool covered) { setCovered(id, covered); }});
    screens_.emplace(clock_, events_);
}

X11System::~X11System() {
    if (listening != &events_) return;
    listening = nullptr;
    qInstallMessageHandler(std::exchange(handlerBefore, nullptr));
}

Capabilities X11System::capabilities() const {
    return {.liesAboveAll = true,
            .passesClicks = !isOnWayland_,
            .returnsKeyboard = true,
            .fadesWindows = true,
            .drawsOnGpu = true,
            .placesWindows = true};
}

void X11System::onLost(std::function<void()> action) {
    events_.onLost(std::move(action));
    if (!listening) handlerBefore = qInstallMessageHandler(keepBackLament);
    listening = &events_;
}

std::unique_ptr<NativeWindow> X11System::makeWindow(const NativeWindowOptions& options,
                                                    NativeWindowDelegate& delegate) {
    return std::make_unique<ProgramWindow>(*this, options, delegate);
}

std::unique_ptr<NativeWindow> X11System::adopt(const HostRef& host,
                                               NativeWindowDelegate& delegate) {
    if (!isConnected()) return nullptr;
    return std::make_unique<HostWindow>(*this, readWindowNumber(host.text).value_or(events_.root()),
                                        delegate);
}

// A server on a compositor sees only the input to its own windows.
std::unique_ptr<IdleWatch> X11System::watchIdle(double seconds, IdleAction action) {
    if (isOnWayland_) return nullptr;
    auto question = idleQuestion(root());
    if (!question) return nullptr;
    return std::make_unique<X11Idle>(clock_, std::move(question), seconds, std::move(action));
}

void X11System::watch(std::function<void(bool)> displaySlept) {
    displaySlept_ = std::move(displaySlept);
    if (!sleep_) return;
    sleep_->wake();
    coverage_->wake();
}

void X11System::stopWatching() {
    displaySlept_ = {};
    asleep_ = false;
    if (!sleep_) return;
    sleep_->rest();
    coverage_->rest();
}

std::vector<xcb_window_t> X11System::mapped() const {
    std::vector<xcb_window_t> ids;
    for (const WindowWatch* window : windows_)
        if (window->isMapped()) ids.push_back(window->id());
    return ids;
}

void X11System::setCovered(xcb_window_t id, bool covered) {
    for (WindowWatch* window : windows_)
        if (window->id() == id) window->setCovered(covered);
}

RootWatch& X11System::root() {
    if (!root_) root_ = std::make_unique<RootWatch>(display_);
    return *root_;
}

StackKeeper& X11System::stack() {
    if (!stack_) stack_ = std::make_unique<StackKeeper>(clock_, root());
    return *stack_;
}

StackedSpaces& X11System::spaces() {
    if (!spaces_)
        spaces_ = std::make_unique<StackedSpaces>(stack(), [this](xcb_window_t window) {
            const auto found = levels_.find(window);
            return found == levels_.end() ? 0 : found->second;
        });
    return *spaces_;
}

NativeWorkspace& X11System::workspace() {
    if (!workspace_) workspace_ = std::make_unique<X11Workspace>(clock_, root(), stack());
    return *workspace_;
}

void X11System::setLevel(xcb_window_t window, int level) {
    if (level == 0)
        levels_.erase(window);
    else
        levels_[window] = level;
}

void X11System::forget(xcb_window_t window) {
    levels_.erase(window);
    if (spaces_) spaces_->forget(window);
    if (stack_) stack_->release(window);
}

void X11System::keyboardMoved() {
    if (root_) root_->keysMoved();
}

}  // namespace platform
