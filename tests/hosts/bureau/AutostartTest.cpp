// SPDX-License-Identifier: MIT
// The entry in the user's autostart folder, as the session reads it.
#include "hosts/bureau/Autostart.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "hosts/bureau/AutostartWacht.h"
#include "tests/support/ZonderThuis.h"

using brixtel::Autostart;

namespace {

class Start : public testing::Test {
  protected:
    QTemporaryDir map;
    QString ingang = map.filePath(QStringLiteral("autostart/nl.groenlicht.brixtel.bureau.desktop"));

    void SetUp() override {
        qputenv("XDG_CONFIG_HOME", map.path().toLocal8Bit());
        ASSERT_TRUE(QDir(map.path()).mkdir(QStringLiteral("autostart")));
    }
    // Whether an entry of this text starts the program.
    [[nodiscard]] bool start(const QByteArray& tekst) const {
        QFile bestand(ingang);
        EXPECT_TRUE(bestand.open(QIODevice::WriteOnly));
        EXPECT_EQ(bestand.write(tekst), tekst.size());
        bestand.close();
        return Autostart::isAan();
    }
};

TEST_F(Start, ItsOwnEntryStartsTheProgramUntilItIsRemoved) {
    EXPECT_FALSE(Autostart::isAan());
    for (int keer = 0; keer < 2; ++keer) {
        EXPECT_EQ(Autostart::zet(true, QStringLiteral("/opt/a \"b\\/brixtel-bureau")), QString());
        EXPECT_TRUE(Autostart::isAan());
        EXPECT_EQ(Autostart::zet(false, {}), QString());
        EXPECT_FALSE(Autostart::isAan());
        EXPECT_FALSE(QFile::exists(ingang));
    }
}

TEST_F(Start, AnEntryThatADesktopHasSwitchedOffDoesNot) {
    const QByteArray kop = "[Desktop Entry]\nType=Application\nExec=brixtel-bureau --dienst\n";
    EXPECT_TRUE(start(kop));
    for (const char* uit :
         {"Hidden=true", "Hidden = true ", "X-GNOME-Autostart-enabled=false",
          "X-GNOME-Autostart-enabled=true\nHidden=true", "Hidden=false\nHidden=true", "Hidden=1",
          "# Hidden=false\nHidden=true", "Hidden=true\r", "Hidden=true\n[Other]\nHidden=false"})
        EXPECT_FALSE(start(kop + uit + '\n')) << uit;
    for (const char* aan : {"Hidden=false", "X-GNOME-Autostart-enabled=true", "#Hidden=true",
                            "XHidden=true", "Hidden[nl]=true", "Name=Hidden=true",
                            "[Other]\nHidden=true", "Hidden=", "Hidden=true\nHidden=false"})
        EXPECT_TRUE(start(kop + aan + '\n')) << aan;
    // The last line has no end.
    EXPECT_FALSE(start(kop + "Hidden=true"));
    // Switched on again, the entry is the program's own.
    EXPECT_EQ(Autostart::zet(true, QStringLiteral("/usr/bin/brixtel-bureau")), QString());
    EXPECT_TRUE(Autostart::isAan());
}

TEST_F(Start, AFileThatIsNoEntryDoesNot) {
    for (const char* tekst : {"", "\n", "Exec=brixtel-bureau\n", "[Other]\nExec=brixtel-bureau\n"})
        EXPECT_FALSE(start(tekst)) << tekst;
    QFile::remove(ingang);
    ASSERT_TRUE(QDir().mkpath(ingang));
    EXPECT_FALSE(Autostart::isAan());
}

// The session reads an entry of any size.
TEST_F(Start, AnEntryBeyondTheLimitCountsAsOnAndCanBeRemoved) {
    EXPECT_TRUE(start("[Desktop Entry]\n" + QByteArray(Autostart::kGrootste, '#')));
    EXPECT_EQ(Autostart::zet(false, {}), QString());
    EXPECT_FALSE(QFile::exists(ingang));
}

TEST_F(Start, AUserWithoutAHomeHasNoFolderForIt) {
    const steun::ZonderThuis zonderThuis;
    EXPECT_TRUE(Autostart::bestand().isEmpty());
    EXPECT_FALSE(Autostart::isAan());
    EXPECT_EQ(Autostart::zet(true, QStringLiteral("/usr/bin/brixtel-bureau")),
              QStringLiteral("de thuismap is niet bekend: HOME is leeg"));
    EXPECT_EQ(Autostart::zet(false, {}), QString());
    EXPECT_FALSE(QFile::exists(QStringLiteral("/.config/autostart")));
    const brixtel::AutostartWacht wacht([] { ADD_FAILURE() << "there is nothing to watch"; });
    QCoreApplication::processEvents();
}

}  // namespace
