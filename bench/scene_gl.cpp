// SPDX-License-Identifier: MIT
// The cost of drawing a scene. Prints one JSON line per scene: milliseconds of
// wall clock (best, median) and processor time of all threads for a complete
// frame; with --gpu, the time by the GPU's own clock.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdio>
#include <vector>

#include "platform/render/QualityLadder.h"
#include "tests/support/SceneSnapshot.h"
#include "platform/scene/DrawList.h"
#include "platform/time/MediaClock.h"
#include "platform/time/ProcessUsage.h"
#include "tests/support/StandInScenes.h"

using namespace platform;

namespace {

struct Settings {
    QSize size;
    double scale = 1.0;
    int frames = 60;
    int rung = 0;  // negative: as the ladder finds it, for 50 frames a second
    bool gpu = false;
    QString still;
};

struct Costs {
    std::vector<double> wall;
    std::vector<double> gpu;
    double cpu = 0.0;
};

double at(std::vector<double> values, double part) {
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return 1000.0 * values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}

class Measurement {
  public:
    Measurement(SceneSnapshot& drawer, const Settings& settings)
        : drawer_(drawer),
          settings_(settings),
          ladder_({.budget = 1.0 / 50.0, .firstRung = kFirstSoftwareRung}) {}

    QJsonObject run(const QString& name) {
        const auto scene = test::makeStandIn(name, 1);
        const int settling = settings_.rung < 0 ? 600 : 5;
        DrawList list;
        for (int i = 0; i < settling + settings_.frames; ++i) {
            scene->advance(6.0 + i / 60.0);
            extract(*scene, 1.0 * settings_.size.width() / settings_.size.height(), list);
            measure(list, i >= settling);
        }
        return report(name);
    }

  private:
    [[nodiscard]] SceneQuality quality() const {
        return settings_.rung < 0 ? ladder_.quality()
                                  : kQualityRungs[static_cast<std::size_t>(settings_.rung)];
    }

    void measure(const DrawList& list, bool counts) {
        const double wall = clock_.now();
        const double cpu = processUsage().cpuSeconds;
        drawer_.render(list, settings_.size, settings_.scale, quality());
        const double seconds = clock_.now() - wall;
        if (settings_.rung < 0 && !counts) ladder_.frameCost(seconds);
        if (!counts) return;
        costs_.wall.push_back(seconds);
        costs_.cpu += processUsage().cpuSeconds - cpu;
        if (const auto gpu = drawer_.renderer().gpuSeconds()) costs_.gpu.push_back(*gpu);
    }

    QJsonObject report(const QString& name) const {
        const SceneQuality real = drawer_.renderer().quality();
        QJsonObject result{
            {QStringLiteral("scene"), name},
            {QStringLiteral("width"), settings_.size.width()},
            {QStringLiteral("height"), settings_.size.height()},
            {QStringLiteral("renderer"), QString::fromStdString(drawer_.rendererName())},
            {QStringLiteral("rung"), settings_.rung < 0 ? ladder_.rung() : settings_.rung},
            {QStringLiteral("samples"), real.samples},
            {QStringLiteral("resolution"), real.resolution},
            {QStringLiteral("draw_calls"), drawer_.renderer().drawCalls()},
            {QStringLiteral("best_ms"), at(costs_.wall, 0.0)},
            {QStringLiteral("median_ms"), at(costs_.wall, 0.5)},
            {QStringLiteral("cpu_ms"), 1000.0 * costs_.cpu / settings_.frames}};
        if (settings_.gpu) {
            result.insert(QStringLiteral("gpu_median_ms"), at(costs_.gpu, 0.5));
            result.insert(QStringLiteral("gpu_95_ms"), at(costs_.gpu, 0.95));
        }
        return result;
    }

    SceneSnapshot& drawer_;
    const Settings settings_;
    SystemClock clock_;
    QualityLadder ladder_;
    Costs costs_;
};

Settings settingsFrom(const QCommandLineParser& parser) {
    Settings settings;
    const QStringList size = parser.value(QStringLiteral("maat")).split(QLatin1Char('x'));
    if (size.size() == 2) settings.size = {size[0].toInt(), size[1].toInt()};
    settings.scale = parser.value(QStringLiteral("schaal")).toDouble();
    settings.frames = std::max(1, parser.value(QStringLiteral("beelden")).toInt());
    settings.rung = std::min(parser.value(QStringLiteral("sport")).toInt(),
                             static_cast<int>(kQualityRungs.size()) - 1);
    settings.gpu = parser.isSet(QStringLiteral("gpu"));
    settings.still = parser.value(QStringLiteral("plaatje"));
    return settings;
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
    option("sport", "rung of the quality ladder; -1: as it settles", "N", "0");
    option("scene", "cube, tunnel, blocks or globe; all of them by default", "NAME");
    option("gpu", "the GPU's own clock");
    option("plaatje", "leaves the last frame as PREFIX-SCENE.png", "PREFIX");
    parser.process(app);
    const Settings settings = settingsFrom(parser);
    const QString only = parser.value(QStringLiteral("scene"));
    for (const QString& name : {QStringLiteral("cube"), QStringLiteral("tunnel"),
                                QStringLiteral("blocks"), QStringLiteral("globe")}) {
        if (!only.isEmpty() && only != name) continue;
        const auto drawer = SceneSnapshot::create({.timed = settings.gpu});
        if (!drawer) {
            std::fprintf(stderr, "no OpenGL that can draw scenes\n");
            return 1;
        }
        Measurement measurement(*drawer, settings);
        const QJsonObject result = measurement.run(name);
        std::printf("%s\n", QJsonDocument(result).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
        if (settings.still.isEmpty()) continue;
        drawer->lastPicture().save(QStringLiteral("%1-%2.png").arg(settings.still, name));
    }
    return 0;
}
