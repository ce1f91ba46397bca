// SPDX-License-Identifier: MIT
// The time that a click takes to the program below the desktop rain on Wayland, with and
// without the rain: from the moment at which the compositor is told of the click to the moment
// at which the program below has heard of it and the compositor has answered. Runs a compositor
// of its own (sway without a screen). Needs the tests to be built: the program below is one of
// their windows.
//
// Usage: klikwayland [--maat=1920x1080] [--kliks=200]
#include <QGuiApplication>
#include <memory>
#include <optional>

#include "bench/Kliktijden.h"
#include "platform/time/MediaClock.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/VirtualPointer.h"

namespace {

using platform::wayland::TestWindow;
using platform::wayland::WaylandSystem;

// The owner of the desktop rain, once drops are seen; none where they never are.
Regen maakRegen(wltest::Sway& sway, const DBusDaemon& bus) {
    Regen bureau(new QProcess);
    QProcessEnvironment omgeving = sway.environment();
    omgeving.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
    bureau->setProcessEnvironment(omgeving);
    bureau->start(QCoreApplication::applicationDirPath() + QStringLiteral("/../bin/brixtel-bureau"),
                  {QStringLiteral("--toon-regen")});
    QImage leeg = sway.picture();
    leeg.fill(Qt::black);
    return until([&] { return sway.picture() != leeg; }) ? std::move(bureau) : nullptr;
}

int meet(const QByteArray& maat, int kliks) {
    wltest::Sway sway(1, "output HEADLESS-1 mode " + maat + "@60Hz\n");
    if (!sway.isRunning()) {
        std::fprintf(stderr, "klikwayland: %s\n", sway.reason().c_str());
        return 1;
    }
    const DBusDaemon bus;
    platform::SystemClock klok;
    WaylandSystem systeem(klok, sway.address());
    TestWindow onder(systeem, {.window = {.frame = {0, 0, 640, 480},
                                          .style = platform::WindowStyle::Titled,
                                          .title = QStringLiteral("onder")}});
    onder.native->show();
    if (!until([&] { return onder.native->isSeen(); })) return 1;
    onder.paintAll({0.0F, 0.0F, 0.0F, 1.0F});
    wltest::VirtualPointer muis(sway.address());
    if (!muis.isThere()) return 1;
    muis.moveTo({1, 1}, {2, 2});
    if (!until([&] { return !onder.moves.empty(); })) return 1;
    const auto klik = [&]() -> std::optional<double> {
        onder.clicks.clear();
        const double begin = klok.now();
        muis.click();
        if (!until([&] { return !onder.clicks.empty(); }, 2000)) return std::nullopt;
        return 1000.0 * (klok.now() - begin);
    };
    Kliktijden tijden;
    if (!meetKliks(
            kliks, [&] { return maakRegen(sway, bus); }, klik, tijden))
        return 1;
    std::printf("%s under sway; ms until the program below has the click\n", maat.constData());
    druk(tijden);
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    QByteArray maat = "1920x1080";
    int kliks = 200;
    for (const QString& woord : QCoreApplication::arguments().mid(1)) {
        const QString waarde = woord.section(u'=', 1);
        if (woord.startsWith(QLatin1String("--maat="))) maat = waarde.toLatin1();
        if (woord.startsWith(QLatin1String("--kliks="))) kliks = waarde.toInt();
    }
    return meet(maat, kliks);
}
