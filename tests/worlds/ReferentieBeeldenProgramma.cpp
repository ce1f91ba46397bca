// SPDX-License-Identifier: MIT
// Makes the stored pictures of the worlds anew; tests/worlds/referentiebeelden calls it.
#include <QDir>
#include <QGuiApplication>
#include <cstdio>

#include "tests/worlds/ReferentieBeelden.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "referentiebeelden: één map\n");
        return 2;
    }
    const QDir folder(QString::fromLocal8Bit(argv[1]));
    for (const brixtel::DrieSoort kind : brixtel::alleSoorten)
        for (const auto drawer : steun::kReferentieTekenaars) {
            const QString name = steun::referentieNaam(kind, drawer);
            if (steun::referentieBeeld(kind, drawer).save(folder.filePath(name))) continue;
            std::fprintf(stderr, "referentiebeelden: %s lukt niet\n", qPrintable(name));
            return 1;
        }
    return 0;
}
