// SPDX-License-Identifier: MIT
// A program with one moving window, for tests to end in every way there is. Says
// on standard output when its first frame is on the screen.
#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>

#include "platform/time/Timer.h"
#include "platform/window/Window.h"
#include "tests/support/WindowSystems.h"

int main(int argc, char** argv) {
    const QGuiApplication app(argc, argv);
    platform::SystemClock clock;
    platform::WindowServer server(clock, {.system = systemOn(clock)});
    server.onConnectionLost([] { std::_Exit(0); });
    platform::Window window(server, {.frame = {10, 10, 200, 150}});
    window.contentView()->setWantsLayer(true);
    window.contentView()->layer()->setBackgroundColor(Qt::green);
    window.showWithKeyboard();
    bool told = false;
    const platform::Timer moving(clock, {.interval = 0.01, .repeats = true}, [&] {
        platform::Layer& layer = *window.contentView()->layer();
        layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
        if (told || !window.statistics().firstFrameTime) return;
        told = true;
        std::puts("shown");
        std::fflush(stdout);
    });
    return QGuiApplication::exec();
}
