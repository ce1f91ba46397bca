// SPDX-License-Identifier: MIT
// What drawing a scene costs. One JSON line for each scene: milliseconds of wall
// clock and of all threads' processor time for a frame, drawn to its end; with
// --gpu what the GPU's own clock says.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <vector>

#include "platform/render/CpuDrawer.h"
#include "platform/render/QualityLadder.h"
#include "platform/render/SceneSnapshot.h"
#include "platform/scene/DrawList.h"
#include "tests/support/StandInScenes.h"

using namespace platform;

namespace {

struct Settings {
    QSize size{1920, 1080};
    double scale = 1.0;
    int frames = 60;
    bool gpu = false;
    bool memory = false;
    int rung = 0;
    QString still;
    std::uint64_t seed = 1;
};

double wallSeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double processorSeconds() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double median(std::vector<double> values) {
    if (values.empty()) return 0.0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

}  // namespace
