// SPDX-License-Identifier: MIT
#include "platform/window/Screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <utility>

#include "platform/window/ScreenSpace.h"

namespace platform {

namespace {
ScreenSource* currentSource = nullptr;
}  // namespace

void ScreenSource::use(ScreenSource* source) {
    currentSource = source;
}

std::vector<Screen> Screen::all() {
    if (currentSource) return currentSource->screens();
    std::vector<Screen> screens;
    for (const QScreen* screen : QGuiApplication::screens())
        screens.push_back(screenFrom(*screen));
    return screens;
}

std::optional<Screen> Screen::main() {
    if (currentSource) {
        const std::vector<Screen> screens = currentSource->screens();
        return screens.empty() ? std::nullopt : std::optional(screens.front());
    }
    const QScreen* const primary = QGuiApplication::primaryScreen();
    if (!primary) return std::nullopt;
    return screenFrom(*primary);
}

std::optional<Screen> Screen::under(const QRectF& rect) {
    std::optional<Screen> best = main();
    double most = 0.0;
    for (const Screen& screen : all()) {
        const QRectF shared = screen.frame & rect;
        const double area = shared.width() * shared.height();
        if (area <= most) continue;
        most = area;
        best = screen;
    }
    return best;
}

std::vector<Screen> distinctRectangles(std::vector<Screen> screens) {
    std::vector<Screen> distinct;
    for (Screen& screen : screens) {
        const bool mirrors =
            std::any_of(distinct.begin(), distinct.end(),
                        [&](const Screen& earlier) { return earlier.frame == screen.frame; });
        if (!mirrors) distinct.push_back(std::move(screen));
    }
    return distinct;
}

class ScreenObserver::Listener {
  public:
    explicit Listener(std::function<void()> action) : action_(std::move(action)) {
        if (currentSource) {
            changes_ = currentSource->observeScreens([this] { note(); });
            return;
        }
        const auto* const app = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
        if (!app) return;
        QObject::connect(app, &QGuiApplication::screenAdded, &context_, [this](QScreen* s) {
            follow(*s);
            note();
        });
        QObject::connect(app, &QGuiApplication::screenRemoved, &context_, [this] { note(); });
        QObject::connect(app, &QGuiApplication::primaryScreenChanged, &context_,
                         [this] { note(); });
        for (const QScreen* screen : QGuiApplication::screens())
            follow(*screen);
    }

  private:
    void follow(const QScreen& screen) {
        const auto noted = [this] { note(); };
        QObject::connect(&screen, &QScreen::geometryChanged, &context_, noted);
        QObject::connect(&screen, &QScreen::logicalDotsPerInchChanged, &context_, noted);
        QObject::connect(&screen, &QScreen::refreshRateChanged, &context_, noted);
    }

    // A later turn of the event loop reports the change: Qt has then finished its own
    // bookkeeping, and a change of several screens is complete.
    void note() {
        if (std::exchange(noted_, true)) return;
        QMetaObject::invokeMethod(
            &context_,
            [this] {
                noted_ = false;
                action_();
            },
            Qt::QueuedConnection);
    }

    std::function<void()> action_;
    bool noted_ = false;
    Observation changes_;
    QObject context_;
};

ScreenObserver::ScreenObserver(std::function<void()> action)
    : listener_(std::make_unique<Listener>(std::move(action))) {}

ScreenObserver::~ScreenObserver() = default;

}  // namespace platform
