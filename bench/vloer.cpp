// SPDX-License-Identifier: MIT
// The floor for measuring scenes: a window of the given size, cleared and
// presented sixty times a second.
//
// Usage: vloer WIDTHxHEIGHT SECONDS
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QStringList>
#include <cstdio>

#include "platform/render/gl/GlCalls.h"
#include "platform/time/ProcessUsage.h"
#include "platform/time/Timer.h"
#include "platform/window/x11/EglOnX11.h"

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList maat = QString::fromLocal8Bit(argv[1]).split(u'x');
    xcb_connection_t* const server = xcb_connect(nullptr, nullptr);
    const xcb_screen_t* const scherm = xcb_setup_roots_iterator(xcb_get_setup(server)).data;
    const xcb_window_t venster = xcb_generate_id(server);
    xcb_create_window(server, XCB_COPY_FROM_PARENT, venster, scherm->root, 0, 0, maat[0].toUShort(),
                      maat[1].toUShort(), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, scherm->root_visual, 0,
                      nullptr);
    xcb_map_window(server, venster);
    xcb_flush(server);
    const auto display = platform::eglDisplayOn(server, 0);
    const auto vlak = platform::eglSurfaceFor(display, server, venster);
    const auto context = vlak ? platform::GlContext::create(display, vlak.get()) : nullptr;
    if (!context || !context->makeCurrent(*vlak)) {
        std::fprintf(stderr, "vloer: geen OpenGL in een venster\n");
        return 1;
    }
    vlak->setSwapInterval(0);
    platform::glClearColor(0.0F, 0.0F, 0.0F, 1.0F);

    platform::SystemClock klok;
    int beelden = 0;
    const platform::Timer beeld(klok, {.interval = 1.0 / 60.0, .repeats = true}, [&] {
        platform::glClear(GL_COLOR_BUFFER_BIT);
        vlak->swap();
        ++beelden;
    });
    const double seconden = QString::fromLocal8Bit(argv[2]).toDouble();
    const platform::Timer einde(klok, {.interval = seconden}, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    std::printf(
        "{\"keuze\":\"vloer\",\"beelden_per_seconde\":%.2f,\"cpu_seconden\":%.3f,"
        "\"geheugen_mb\":%.1f,\"tekenaar\":\"%s\",\"eerste_beeld_ms\":null,\"sport\":0}\n",
        beelden / seconden, platform::processUsage().cpuSeconds,
        platform::processUsage().peakMemoryMb, context->rendererName().c_str());
    return 0;
}
