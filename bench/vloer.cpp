// SPDX-License-Identifier: MIT
// The floors for measuring scenes: a window of the given size, presented sixty times a second.
// OpenGL clears it, or the X server copies a picture from shared memory that nobody draws.
//
// Usage: vloer WIDTHxHEIGHT SECONDS [gedeeld]
#include <xcb/shm.h>
#include <xcb/xcb.h>

#include <QCoreApplication>
#include <QStringList>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "platform/render/gl/GlCalls.h"
#include "platform/time/ProcessUsage.h"
#include "platform/time/Timer.h"
#include "platform/window/x11/EglOnX11.h"
#include "platform/window/x11/ShmImage.h"

namespace {

struct Venster {
    xcb_connection_t* server;
    const xcb_screen_t* scherm;
    xcb_window_t id;
    std::uint16_t breed;
    std::uint16_t hoog;
};

Venster maakVenster(const QStringList& maat) {
    Venster venster{.server = xcb_connect(nullptr, nullptr),
                    .scherm = nullptr,
                    .id = 0,
                    .breed = maat[0].toUShort(),
                    .hoog = maat[1].toUShort()};
    venster.scherm = xcb_setup_roots_iterator(xcb_get_setup(venster.server)).data;
    venster.id = xcb_generate_id(venster.server);
    xcb_create_window(venster.server, XCB_COPY_FROM_PARENT, venster.id, venster.scherm->root, 0, 0,
                      venster.breed, venster.hoog, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT,
                      venster.scherm->root_visual, 0, nullptr);
    xcb_map_window(venster.server, venster.id);
    xcb_flush(venster.server);
    return venster;
}

// A way to present one picture, and the name of its drawer; null where it is not there.
struct Toner {
    std::function<void()> toon;
    std::string tekenaar;
};

Toner metOpenGl(const Venster& venster) {
    const auto display = platform::eglDisplayOn(venster.server, 0);
    std::shared_ptr<platform::EglWindowSurface> vlak =
        platform::eglSurfaceFor(display, venster.server, venster.id);
    std::shared_ptr<platform::GlContext> context =
        vlak ? platform::GlContext::create(display, vlak.get()) : nullptr;
    if (!context || !context->makeCurrent(*vlak)) return {};
    vlak->setSwapInterval(0);
    platform::glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
    return {.toon =
                [vlak, context] {
                    platform::glClear(GL_COLOR_BUFFER_BIT);
                    vlak->swap();
                },
            .tekenaar = context->rendererName()};
}

Toner metGedeeldGeheugen(const Venster& venster) {
    std::shared_ptr<platform::ShmImage> beeld =
        platform::ShmImage::create(venster.server, std::size_t{4} * venster.breed * venster.hoog);
    if (!beeld) return {};
    const xcb_gcontext_t pen = xcb_generate_id(venster.server);
    xcb_create_gc(venster.server, pen, venster.id, 0, nullptr);
    const auto toon = [venster, beeld, pen] {
        xcb_shm_put_image(venster.server, venster.id, pen, venster.breed, venster.hoog, 0, 0,
                          venster.breed, venster.hoog, 0, 0, venster.scherm->root_depth,
                          XCB_IMAGE_FORMAT_Z_PIXMAP, 1, beeld->segment(), 0);
        xcb_flush(venster.server);
        // The server tells that it has read the picture.
        std::free(xcb_wait_for_event(venster.server));
    };
    return {.toon = toon, .tekenaar = "-"};
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList woorden = QCoreApplication::arguments();
    const Venster venster = maakVenster(woorden.value(1).split(u'x'));
    const bool gedeeld = woorden.value(3) == QLatin1String("gedeeld");
    const Toner toner = gedeeld ? metGedeeldGeheugen(venster) : metOpenGl(venster);
    if (!toner.toon) {
        std::fprintf(stderr, "vloer: geen %s\n",
                     gedeeld ? "gedeeld geheugen" : "OpenGL in een venster");
        return 1;
    }
    platform::SystemClock klok;
    int beelden = 0;
    const platform::Timer beeld(klok, {.interval = 1.0 / 60.0, .repeats = true}, [&] {
        toner.toon();
        ++beelden;
    });
    const double seconden = woorden.value(2).toDouble();
    const platform::Timer einde(klok, {.interval = seconden}, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();
    std::printf(
        "{\"keuze\":\"vloer\",\"beelden_per_seconde\":%.2f,\"cpu_seconden\":%.3f,"
        "\"geheugen_mb\":%.1f,\"tekenaar\":\"%s\",\"eerste_beeld_ms\":null,\"sport\":0}\n",
        beelden / seconden, platform::processUsage().cpuSeconds,
        platform::processUsage().peakMemoryMb, toner.tekenaar.c_str());
    return 0;
}
