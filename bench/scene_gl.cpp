// SPDX-License-Identifier: MIT
// What drawing a scene costs: `scene_gl [--maat BxH] [--schaal S] [--beelden N]
// [--scene NAME] [--sport N] [--gpu] [--plaatje FILE.png]`. One JSON line for each scene. Times are
// wall clock from the draw to the end of the drawing, and the processor time of
// all threads; with --gpu also what the GPU's own clock says.
#include <QCommandLineParser>
#include <QGuiApplication>
#include <cstdio>

#include "platform/render/SceneSnapshot.h"
#include "platform/scene/DrawList.h"
#include "tests/support/StandInScenes.h"

using namespace platform;

int main(int argc, char** argv) {
    QGuiApplication::setApplicationName(QStringLiteral("scene_gl"));
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    auto s = test::makeStandIn(QString::fromLatin1(argv[1]), 1);
    s->advance(6.0);
    DrawList l;
    extract(*s, 16.0 / 9.0, l);
    auto snap = SceneSnapshot::create();
    const double scale = atof(argv[4]);
    auto p = snap->picture(l, QSizeF(atof(argv[2]), atof(argv[3])), scale, {.samples = atoi(argv[6]), .resolution = atof(argv[7])});
    p.save(QString::fromLatin1(argv[5]));
    printf("%s %d calls, samples %d errors %d\n", snap->rendererName().c_str(), snap->renderer().drawCalls(), snap->renderer().quality().samples, snap->errors());
}
