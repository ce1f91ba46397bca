// SPDX-License-Identifier: MIT
// The program on a screen of a test's own, under a real window manager.
#pragma once

#include <gtest/gtest.h>

#include "tests/hosts/saver/Programma.h"
#include "tests/support/Openbox.h"

namespace brixtel {

class Scherm : public testing::Test {
  protected:
    Xvfb server{"1280x800x24"};
    Openbox vensterbeheer{server.display()};
    Programma programma{server.display()};

    void SetUp() override { ASSERT_TRUE(vensterbeheer.isReady()); }
    void TearDown() override { vensterbeheer.stop(); }
    void draai(QProcess& proces, const QString& naam, const QStringList& woorden) const {
        QProcessEnvironment omgeving = QProcessEnvironment::systemEnvironment();
        omgeving.insert(QStringLiteral("DISPLAY"), server.display());
        proces.setProcessEnvironment(omgeving);
        proces.start(naam, woorden);
        proces.waitForStarted();
    }
    // Runs a tool on this display and returns what it prints.
    QByteArray hulp(QStringList woorden) const {
        QProcess proces;
        const QString naam = woorden.takeFirst();
        draai(proces, naam, woorden);
        proces.waitForFinished(10'000);
        return proces.readAllStandardOutput();
    }
    void xdotool(const char* woorden) const {
        hulp(QStringLiteral("xdotool %1").arg(QLatin1String(woorden)).split(u' '));
    }
    // Windows of the program that show.
    int vensters() const {
        return static_cast<int>(hulp({QStringLiteral("xdotool"), QStringLiteral("search"),
                                      QStringLiteral("--onlyvisible"), QStringLiteral("--class"),
                                      QStringLiteral("^brixtel-saver$")})
                                    .count('\n'));
    }
    bool regent(const QRect& deel = {}) {
        return until([&] {
            const QImage beeld = server.picture(server.screen().root);
            return isRegen(deel.isEmpty() ? beeld : beeld.copy(deel));
        });
    }
    void startRegen(const QStringList& meer = {}) {
        programma.start(QStringList{QStringLiteral("--keuze=regen")} + meer);
    }
};

}  // namespace brixtel
