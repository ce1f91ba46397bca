// SPDX-License-Identifier: MIT
// A window with a picture that always moves, on a compositor of the test's own and a clock
// moved by hand.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include "platform/window/Window.h"
#include "platform/window/wayland/WaylandSystem.h"
#include "tests/support/Until.h"
#include "tests/support/wayland/Compositor.h"

namespace platform::wayland {

template <typename Clock>
struct MovingWindowOn {
    explicit MovingWindowOn(const wltest::Options& options = {},
                            DrawerChoice choice = DrawerChoice::Cpu)
        : compositor(options), drawer(choice) {
        auto view = std::make_shared<View>(QRectF());
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(Qt::green);
        view->layer()->addAnimation(
            "moves",
            BasicAnimation{.keyPath = KeyPath::Opacity,
                           .from = 0.0,
                           .to = 1.0,
                           .timing = {.duration = 10.0, .repeatCount = 1.0e6}},
            clock.now());
        window.setContentView(view);
        window.show();
    }
    int pictures() { return compositor.pictures(); }
    // Lets time go by until there is one more than at the last call.
    bool paintsOnce() {
        const int before = painted_;
        until([&] {
            if (pictures() == before) clock.advance(0.001);
            return pictures() > before;
        });
        painted_ = pictures();
        return painted_ > before;
    }
    std::uint64_t frames() { return window.statistics().frames; }
    // Lets both sides act on all that the other side did.
    void settle() {
        for (int i = 0; i < 3; ++i) {
            QCoreApplication::processEvents();
            (void)system->connection().roundTrip();
        }
    }

    wltest::Compositor compositor;
    Clock clock{100.0};
    const DrawerChoice drawer;
    std::shared_ptr<WaylandSystem> system =
        std::make_shared<WaylandSystem>(clock, compositor.address());
    WindowServer server{clock, {.drawer = drawer, .system = system}};
    Window window{server, {.frame = {0, 0, 640, 480}, .style = WindowStyle::FullScreen}};

  private:
    int painted_ = 0;
};
using MovingWindow = MovingWindowOn<ManualClock>;

// How often the thread of that name was given a processor, by the kernel's count; -1 while
// the thread does not sleep.
inline std::int64_t runsOf(const QByteArray& name) {
    std::int64_t runs = -1;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks.filePath(task) + QStringLiteral("/comm"));
        QFile status(tasks.filePath(task) + QStringLiteral("/status"));
        if (!comm.open(QIODevice::ReadOnly) || comm.readAll().trimmed() != name) continue;
        if (!status.open(QIODevice::ReadOnly)) continue;
        const QByteArray text = status.readAll();
        if (!text.contains("State:\tS")) return -1;
        runs = 0;
        for (const QByteArray& line : text.split('\n'))
            if (line.contains("ctxt_switches")) runs += line.split('\t').last().toLongLong();
    }
    return runs;
}

// The same once the thread has slept for a while; -1 where the thread never does.
inline std::int64_t runsAtRest(const QByteArray& name) {
    std::int64_t runs = -1;
    int same = 0;
    const bool rests = until([&] {
        const std::int64_t now = runsOf(name);
        same = now >= 0 && now == runs ? same + 1 : 0;
        runs = now;
        return same == 20;
    });
    return rests ? runs : -1;
}

}  // namespace platform::wayland
