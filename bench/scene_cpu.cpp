// SPDX-License-Identifier: MIT
// The cost of the worlds where the processor alone draws them: processor time of a
// frame, and the median of how long it takes, each world at every size, as JSON lines. With
// --vergelijk also how far the picture is from OpenGL's at four times the size, averaged down.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QImage>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "tests/support/SceneSnapshot.h"
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Shading.h"
#include "platform/time/ProcessUsage.h"
#include "tests/support/PictureQuality.h"
#include "worlds/DrieWereld.h"

namespace {

using brixtel::DrieSoort;
using brixtel::DrieWereld;
using platform::PixelBuffer;

struct Settings {
    QSize size{1920, 1080};
    double scale = 1.0;
    int frames = 60;
    double from = 6.0;
    double resolution = 1.0;
    int threads = 0;
    bool compares = false;
    QString still;
};

std::vector<brixtel::Lijn> twentyFour() {
    std::vector<brixtel::Lijn> lines;
    double longitude = -30.0;
    for (const char* code :
         {"US", "DE", "IE", "JP", "BR", "SE", "FR", "GB", "ES", "IT", "BE", "CH",
          "AT", "PL", "CZ", "DK", "NO", "FI", "PT", "GR", "ZA", "CA", "EG", "TR"})
        lines.push_back({{code, 60.0 - longitude, longitude += 3.0}, {"Proef"}, 1});
    return lines;
}

PixelBuffer bufferOf(QImage& image) {
    return {reinterpret_cast<std::uint32_t*>(image.bits()),
            static_cast<int>(image.bytesPerLine() / 4), image.size()};
}

void measure(DrieSoort kind, const Settings& settings) {
    platform::ManualClock clock;
    platform::RandomSource random{1};
    brixtel::LandenTabel countries{"/nergens/landen.bin"};
    DrieWereld world(
        kind, brixtel::DrieWereldOpties{.eigenLijnen = true},
        brixtel::DrieWereldBronnen{.klok = clock, .toeval = random, .landen = &countries});
    if (kind == DrieSoort::bol) world.zetLijnen(twentyFour());
    platform::CpuSceneDrawer drawer(platform::CpuSceneDrawer::Options{.threads = settings.threads});
    QImage picture(settings.size, QImage::Format_RGB32);
    platform::DrawList list;
    const double aspect = 1.0 * settings.size.width() / settings.size.height();
    using Steady = std::chrono::steady_clock;
    double cost = 0.0;
    std::vector<double> walls;
    for (int i = 0; i < 5 + settings.frames; ++i) {
        world.scene()->advance(settings.from + i / 60.0);
        platform::extract(*world.scene(), aspect, list);
        const double before = platform::processUsage().cpuSeconds;
        const auto start = Steady::now();
        drawer.draw(list, bufferOf(picture),
                    {.scale = settings.scale, .resolution = settings.resolution, .isKept = i > 0});
        if (i < 5) continue;
        cost += platform::processUsage().cpuSeconds - before;
        walls.push_back(std::chrono::duration<double>(Steady::now() - start).count());
    }
    std::sort(walls.begin(), walls.end());
    const auto& counts = drawer.counts();
    QJsonObject result{{QStringLiteral("scene"), ruweWaarde(kind)},
                       {QStringLiteral("width"), settings.size.width()},
                       {QStringLiteral("height"), settings.size.height()},
                       {QStringLiteral("cpu_ms"), 1000.0 * cost / settings.frames},
                       {QStringLiteral("wall_ms"), 1000.0 * walls[walls.size() / 2]},
                       {QStringLiteral("tiles"), counts.tiles},
                       {QStringLiteral("drawn"), counts.drawn},
                       {QStringLiteral("glowing"), counts.glowing},
                       {QStringLiteral("encoded"), counts.encoded}};
    if (!settings.still.isEmpty())
        picture.save(settings.still + QLatin1Char('-') + ruweWaarde(kind) + QStringLiteral(".png"));
    if (settings.compares) {
        const auto snapshot = platform::SceneSnapshot::create();
        if (snapshot) {
            const QImage large = snapshot->picture(list, settings.size, 4.0 * settings.scale);
            const QImage wanted = platform::test::averagedDown(large, 4);
            result.insert(QStringLiteral("psnr"), platform::test::psnr(picture, wanted));
            const QImage own = snapshot->picture(list, settings.size, settings.scale);
            result.insert(QStringLiteral("psnr_gl"), platform::test::psnr(own, wanted));
            if (!settings.still.isEmpty())
                wanted.save(settings.still + QLatin1Char('-') + ruweWaarde(kind) +
                            QStringLiteral("-ref.png"));
        }
    }
    std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
    std::fflush(stdout);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const auto option = [&](const char* name, const char* help, const char* value = "",
                            const char* byDefault = "") {
        parser.addOption({QString::fromLatin1(name), QString::fromUtf8(help),
                          QString::fromLatin1(value), QString::fromLatin1(byDefault)});
    };
    option("maat", "pixels", "BxH", "1920x1080");
    option("schaal", "pixels per point", "S", "1");
    option("beelden", "frames", "N", "60");
    option("vanaf", "the scene's first second", "S", "6");
    option("scene", "one of the worlds by its name; all of them by default", "NAME");
    option("oplossing", "pixels drawn per pixel shown", "S", "1");
    option("draden", "threads; 0: by the machine", "N", "0");
    option("vergelijk", "with OpenGL at four times the size");
    option("plaatje", "leaves the last frame as PREFIX-SCENE.png", "PREFIX");
    parser.process(app);
    Settings settings;
    const QStringList size = parser.value(QStringLiteral("maat")).split(QLatin1Char('x'));
    if (size.size() == 2) settings.size = {size[0].toInt(), size[1].toInt()};
    settings.scale = parser.value(QStringLiteral("schaal")).toDouble();
    settings.frames = std::max(1, parser.value(QStringLiteral("beelden")).toInt());
    settings.from = parser.value(QStringLiteral("vanaf")).toDouble();
    settings.resolution = parser.value(QStringLiteral("oplossing")).toDouble();
    settings.threads = parser.value(QStringLiteral("draden")).toInt();
    settings.compares = parser.isSet(QStringLiteral("vergelijk"));
    settings.still = parser.value(QStringLiteral("plaatje"));
    const QString only = parser.value(QStringLiteral("scene"));
    for (const DrieSoort kind : brixtel::alleSoorten)
        if (only.isEmpty() || only == ruweWaarde(kind)) measure(kind, settings);
    return 0;
}
