// SPDX-License-Identifier: MIT
// The module as a program finds it that was not linked with it.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QProcess>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <memory>

#include "tests/support/Paden.h"
#include "tests/support/TijdelijkeMap.h"

namespace {

constexpr const char* kAlles = R"(
    import QtQuick
    import Brixtel.Controls
    Column {
        BXKnop { titel: "x" }
        BXVinkStijl { label: "x" }
        BXSchakelStijl { label: "x" }
        BXKeuze { opties: [{ waarde: 1, label: "x" }]; keuze: 1 }
        BXSchuif { naam: SchuifFocus.actief; tekst: BX.bxProcent(0.256) + BX.bxGetal(1234.5, 1) }
        BXRij { titel: "x"; open: true; BXUitleg { tekst: "x" } }
        BXMelding { tekst: "x"; knop: "x" }
        BXLijn {}
    })";

void laadAlles(const QString& map) {
    QQmlEngine machine;
    QStringList waarschuwingen;
    QObject::connect(&machine, &QQmlEngine::warnings, [&](const QList<QQmlError>& nieuwe) {
        for (const QQmlError& een : nieuwe)
            waarschuwingen << een.toString();
    });
    machine.addImportPath(map);
    QQmlComponent onderdeel(&machine);
    onderdeel.setData(kAlles, QUrl());
    const std::unique_ptr<QObject> kolom(onderdeel.create());
    ASSERT_TRUE(kolom) << qPrintable(onderdeel.errorString());
    EXPECT_EQ(qobject_cast<QQuickItem*>(kolom.get())->childItems()[4]->property("tekst"),
              QStringLiteral("26%1.234,5"));
    EXPECT_EQ(waarschuwingen, QStringList());
}

TEST(Module, LoadsFromTheBuildTree) {
    laadAlles(QStringLiteral(BRIXTEL_LIB_DIR "/qml"));
}

TEST(Module, LoadsFromAnInstalledTree) {
    const steun::TijdelijkeMap map;
    const QString doel = QString::fromStdString((map / "").string());
    for (const char* vloer : {"platform/time", "drawing", "controls"}) {
        QProcess cmake;
        cmake.start(QStringLiteral(BRIXTEL_CMAKE),
                    {QStringLiteral("-DCMAKE_INSTALL_PREFIX=") + doel, QStringLiteral("-P"),
                     QStringLiteral(BRIXTEL_BUILD_DIR "/%1/cmake_install.cmake")
                         .arg(QLatin1String(vloer))});
        ASSERT_TRUE(cmake.waitForFinished(60'000));
        ASSERT_EQ(cmake.exitCode(), 0) << cmake.readAllStandardError().toStdString();
    }
    laadAlles(doel + QStringLiteral(BRIXTEL_LIBDIR "/qml"));
}

}  // namespace
