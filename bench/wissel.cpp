// SPDX-License-Identifier: MIT
// The time that the rotation blocks the event loop. Runs the rotation in a window under
// an X server of its own, by a clock that is moved by hand, until each scene has
// followed each other scene. Prints the longest single turn of the main thread around
// each change. The processor draws; OpenGL, where needed, has its own thread.
//
// Usage: wissel [--maat=1920x1080] [--keer=2]
#include <poll.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "BrixtelSaver/BrixtelSaver.h"
#include "platform/time/ProcessUsage.h"
#include "platform/window/Window.h"
#include "tests/BrixtelSaver/Instellingen.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

namespace {

using brixtel::SaverKeuze;

constexpr double kBeeld = 1.0 / 60.0;
constexpr int kBeeldenNa = 8;
constexpr int kMeesteWissels = 400;
constexpr int kScenes = 5;

struct Blok {
    double wand = 0.0;       // milliseconds of wall clock
    double processor = 0.0;  // milliseconds of the main thread's processor time
};

class Wisseling {
  public:
    explicit Wisseling(QSize maat)
        : x_(QStringLiteral("%1x%2x24").arg(maat.width()).arg(maat.height()).toStdString()),
          server_(klok_, {.drawer = platform::DrawerChoice::Auto,
                          .system = systemOn(klok_, x_.display())}),
          venster_(server_,
                   hostRef(x_.makeWindow({.width = maat.width(), .height = maat.height()}))),
          view_(std::make_shared<brixtel::BrixtelSaverView>(
              QRectF(QPointF(0, 0), venster_.frame().size()), false,
              platform::ScreenSaverContext{
                  .clock = klok_, .random = toeval_, .notifications = berichten_})) {
        venster_.setContentView(view_);
        view_->startAnimation();
        wisselTijd_ = klok_.now();
    }

    // The longest turn of the main thread around one change.
    struct Wissel {
        SaverKeuze van, naar;
        Blok langste;
    };
    Wissel volgende() {
        wisselTijd_ += view_->wisselKlok().interval();
        klok_.leap(wisselTijd_ - 2.5 * kBeeld - klok_.now());
        const SaverKeuze van = *view_->huidige();
        Wissel wissel{van, van, {}};
        for (int i = 0; i < 3 + kBeeldenNa; ++i) {
            const Blok blok = beurt();
            if (*view_->huidige() != van && blok.wand > wissel.langste.wand) wissel.langste = blok;
            const auto beelden = venster_.statistics().frames;
            // Waits without turning the event loop, so that every turn is inside beurt().
            for (int wacht = 0; wacht < 20 && venster_.statistics().frames == beelden; ++wacht)
                poll(nullptr, 0, 1);
        }
        wissel.naar = *view_->huidige();
        return wissel;
    }

  private:
    Blok beurt() {
        const double begin = wandklok_.now();
        const double verbruikt = platform::threadCpuSeconds();
        klok_.advance(kBeeld);
        QCoreApplication::processEvents();
        return {1e3 * (wandklok_.now() - begin), 1e3 * (platform::threadCpuSeconds() - verbruikt)};
    }

    const brixtel::EigenInstellingen eigen_;  // without a stored choice: the rotation
    const Xvfb x_;
    platform::SystemClock wandklok_;
    platform::ManualClock klok_;
    platform::RandomSource toeval_{1};
    platform::DistributedNotificationCenter berichten_{QString()};
    platform::WindowServer server_;
    platform::Window venster_;
    std::shared_ptr<brixtel::BrixtelSaverView> view_;
    double wisselTijd_ = 0.0;  // of the last change
};

using Tabel = std::array<std::array<std::vector<Blok>, kScenes>, kScenes>;

std::size_t plek(SaverKeuze scene) {
    return static_cast<std::size_t>(scene) - static_cast<std::size_t>(SaverKeuze::regen);
}

SaverKeuze scene(int plek) {
    return static_cast<SaverKeuze>(static_cast<int>(SaverKeuze::regen) + plek);
}

bool isVol(const Tabel& tabel, std::size_t keer) {
    for (std::size_t van = 0; van < kScenes; ++van)
        for (std::size_t naar = 0; naar < kScenes; ++naar)
            if (van != naar && tabel[van][naar].size() < keer) return false;
    return true;
}

void druk(const Tabel& tabel) {
    Blok langste;
    std::printf("from \\ to, ms  ");
    for (int naar = 0; naar < kScenes; ++naar)
        std::printf("%14s", qPrintable(ruweWaarde(scene(naar))));
    for (int van = 0; van < kScenes; ++van) {
        std::printf("\n%-15s", qPrintable(ruweWaarde(scene(van))));
        for (int naar = 0; naar < kScenes; ++naar) {
            Blok blok;
            for (const Blok& ander :
                 tabel[static_cast<std::size_t>(van)][static_cast<std::size_t>(naar)])
                if (ander.wand > blok.wand) blok = ander;
            if (blok.wand > langste.wand) langste = blok;
            if (van == naar)
                std::printf("%14s", "-");
            else
                std::printf("%7.1f (%4.1f)", blok.wand, blok.processor);
        }
    }
    std::printf("\nlongest: %.1f ms, of which the main thread worked %.1f\n", langste.wand,
                langste.processor);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    QSize maat(1920, 1080);
    std::size_t keer = 2;
    for (const QString& woord : QCoreApplication::arguments().mid(1)) {
        const QStringList delen = woord.section(u'=', 1).split(u'x');
        if (woord.startsWith(QLatin1String("--maat=")) && delen.size() == 2)
            maat = {delen[0].toInt(), delen[1].toInt()};
        else if (woord.startsWith(QLatin1String("--keer=")))
            keer = delen[0].toUInt();
        else
            return 2;
    }
    Wisseling wisseling(maat);
    Tabel tabel;
    int wissels = 0;
    for (; wissels < kMeesteWissels && !isVol(tabel, keer); ++wissels) {
        const auto wissel = wisseling.volgende();
        tabel[plek(wissel.van)][plek(wissel.naar)].push_back(wissel.langste);
    }
    std::printf("%dx%d, %d changes; passed (main thread's work)\n", maat.width(), maat.height(),
                wissels);
    druk(tabel);
    return isVol(tabel, keer) ? 0 : 1;
}
