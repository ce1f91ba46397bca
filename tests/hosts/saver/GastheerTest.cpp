// SPDX-License-Identifier: MIT
// The program in a host's window, as xscreensaver and its kind run it.
#include <gtest/gtest.h>
#include <signal.h>

#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include "platform/time/MediaClock.h"
#include "tests/hosts/saver/Programma.h"

using brixtel::isRegen;
using brixtel::Programma;

namespace {

class Gastheer : public testing::Test {
  protected:
    Xvfb server{"800x600x24"};
    Programma programma{server.display()};

    static QString hex(xcb_window_t venster) { return QStringLiteral("0x%1").arg(venster, 0, 16); }
    void toonIn(xcb_window_t venster, const QStringList& meer = {}) {
        programma.start(QStringList{QStringLiteral("--root"), QStringLiteral("--window-id"),
                                    hex(venster), QStringLiteral("--keuze=regen")} +
                        meer);
    }
    bool regentIn(xcb_window_t venster) {
        return until([&] { return isRegen(server.picture(venster)); });
    }
    // Milliseconds from the act to the program's end.
    template <typename Doe>
    int eindigtNa(Doe doe) {
        const platform::SystemClock klok;
        const double begin = klok.now();
        doe();
        EXPECT_TRUE(programma.wacht());
        return static_cast<int>((klok.now() - begin) * 1000.0);
    }
};

TEST_F(Gastheer, ShowsTheRainInTheWindowThatIsNamed) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    const auto ander = server.makeWindow({.width = 100, .height = 100});
    toonIn(venster);
    EXPECT_TRUE(regentIn(venster));
    EXPECT_FALSE(isRegen(server.picture(ander)));
}

TEST_F(Gastheer, ShowsItInTheWindowThatTheEnvironmentNames) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    programma.zet(QStringLiteral("XSCREENSAVER_WINDOW"), hex(venster));
    programma.start({QStringLiteral("-root"), QStringLiteral("-keuze"), QStringLiteral("regen")});
    EXPECT_TRUE(regentIn(venster));
}

TEST_F(Gastheer, WithoutAnyWindowRootIsTheScreenItself) {
    programma.start({QStringLiteral("--root"), QStringLiteral("--keuze=regen")});
    EXPECT_TRUE(regentIn(server.screen().root));
}

TEST_F(Gastheer, SigtermEndsItBySigtermWithoutAWord) {
    const auto venster = server.makeWindow({});
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    const auto duur = eindigtNa([&] { kill(static_cast<pid_t>(programma.nummer()), SIGTERM); });
    EXPECT_TRUE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), SIGTERM);
    EXPECT_TRUE(programma.fouten().isEmpty());
    RecordProperty("milliseconds", duur);
}

TEST_F(Gastheer, AWindowDestroyedWhileRunningEndsItWithoutAWord) {
    const auto venster = server.makeWindow({});
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    const auto duur = eindigtNa([&] { server.destroy(venster); });
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_TRUE(programma.fouten().isEmpty());
    RecordProperty("milliseconds", duur);
}

// A program that waits for the server must not wait with its end for it too.
TEST_F(Gastheer, SigtermEndsItWhileTheServerHangs) {
    const auto venster = server.makeWindow({});
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    kill(server.process(), SIGSTOP);
    // All the time that it takes, the server hangs.
    const auto duur = eindigtNa([&] { kill(static_cast<pid_t>(programma.nummer()), SIGTERM); });
    kill(server.process(), SIGCONT);
    EXPECT_TRUE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), SIGTERM);
    RecordProperty("milliseconds", duur);
}

TEST_F(Gastheer, AHostsWindowThatNeverWasEndsItWithoutAWord) {
    const auto venster = server.makeWindow({});
    server.destroy(venster);
    programma.zet(QStringLiteral("XSCREENSAVER_WINDOW"), hex(venster));
    toonIn(venster);
    EXPECT_TRUE(programma.wacht());
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_TRUE(programma.fouten().isEmpty());
}

TEST_F(Gastheer, AWindowThatNeverWasIsToldOfWhereNoHostIsBehindIt) {
    const auto venster = server.makeWindow({});
    server.destroy(venster);
    toonIn(venster);
    EXPECT_TRUE(programma.wacht());
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_EQ(programma.uitgang(), 1);
    EXPECT_EQ(programma.fouten(),
              "brixtel-saver: er is geen venster " + hex(venster).toUtf8() + "\n");
}

TEST_F(Gastheer, FollowsTheSizeOfItsWindow) {
    const auto venster = server.makeWindow({.width = 200, .height = 150});
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    server.resize(venster, 600, 500);
    // Rain falls in the corner that was not there before.
    EXPECT_TRUE(until([&] { return isRegen(server.picture(venster).copy(300, 50, 300, 200)); }));
}

TEST_F(Gastheer, TakesNoFocusAndNoInput) {
    const auto venster = server.makeWindow({});
    xcb_connection_t* const verbinding = server.connection();
    xcb_set_input_focus(verbinding, XCB_INPUT_FOCUS_PARENT, server.screen().root, XCB_CURRENT_TIME);
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    auto* focus = xcb_get_input_focus_reply(verbinding, xcb_get_input_focus(verbinding), nullptr);
    EXPECT_EQ(focus->focus, server.screen().root);
    free(focus);
    auto* eigenschappen = xcb_get_window_attributes_reply(
        verbinding, xcb_get_window_attributes(verbinding, venster), nullptr);
    const std::uint32_t invoer =
        XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_POINTER_MOTION;
    EXPECT_EQ(eigenschappen->all_event_masks & invoer, 0U);
    free(eigenschappen);
}

TEST_F(Gastheer, TheServersDeathEndsItQuietly) {
    const auto venster = server.makeWindow({});
    toonIn(venster);
    ASSERT_TRUE(regentIn(venster));
    server.kill();
    EXPECT_TRUE(programma.wacht());
    EXPECT_FALSE(programma.doorSignaal());
    EXPECT_TRUE(programma.fouten().isEmpty());
}

// A full-screen saver holds its display's place by a file.
TEST_F(Gastheer, TheServersDeathLeavesNoFileOfAFullScreenSaver) {
    programma.zet(QStringLiteral("XDG_RUNTIME_DIR"), programma.map());
    const auto plaatsen = [&] {
        return QDir(programma.map()).entryList({QStringLiteral("brixtel-saver-*")});
    };
    programma.start({QStringLiteral("--keuze=regen")});
    ASSERT_TRUE(until([&] { return isRegen(server.picture(server.screen().root)); }));
    ASSERT_EQ(plaatsen().size(), 1);
    server.kill();
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_EQ(plaatsen(), QStringList());
}

TEST_F(Gastheer, MeasuresItselfWhenAsked) {
    const auto venster = server.makeWindow({.width = 640, .height = 480});
    toonIn(venster, {QStringLiteral("--meet"), QStringLiteral("--seconden=1.5")});
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    const QJsonObject meting = QJsonDocument::fromJson(programma.uit()).object();
    EXPECT_EQ(meting.size(), 9);
    EXPECT_EQ(meting[QLatin1String("keuze")].toString(), QStringLiteral("regen"));
    EXPECT_EQ(meting[QLatin1String("tekenaar")].toString(), QStringLiteral("cpu"));
    EXPECT_GT(meting[QLatin1String("beelden")].toInt(), 5);
    EXPECT_GT(meting[QLatin1String("eerste_beeld_ms")].toDouble(), 0.0);
}

TEST_F(Gastheer, OpenGlDrawsTheRainWhenAskedFor) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    toonIn(venster, {QStringLiteral("--tekenaar=gl")});
    EXPECT_TRUE(regentIn(venster));
}

// A 3D scene lights less than the rain does, and more than nothing.
TEST_F(Gastheer, EveryWorldShowsWithEitherDrawer) {
    for (const char* keuze : {"bol", "kubus", "tunnel", "logo"})
        for (const char* tekenaar : {"cpu", "gl"}) {
            const auto venster = server.makeWindow({.width = 480, .height = 360});
            Programma eigen{server.display()};
            eigen.start({QStringLiteral("--window-id"), hex(venster),
                         QStringLiteral("--keuze=") + QLatin1String(keuze),
                         QStringLiteral("--tekenaar=") + QLatin1String(tekenaar)});
            EXPECT_TRUE(until([&] {
                return brixtel::aandeelGroen(server.picture(venster)) > 0.01;
            })) << keuze
                << ' ' << tekenaar;
            kill(static_cast<pid_t>(eigen.nummer()), SIGTERM);
            EXPECT_TRUE(eigen.wacht());
            EXPECT_EQ(eigen.uitgang(), SIGTERM) << keuze << ' ' << tekenaar;
            server.destroy(venster);
        }
}

TEST_F(Gastheer, WithoutAnyOpenGlItRainsInPlaceOfAWorld) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    programma.zet(QStringLiteral("__EGL_VENDOR_LIBRARY_FILENAMES"), QStringLiteral("/er/niet"));
    programma.start({QStringLiteral("--window-id"), hex(venster), QStringLiteral("--keuze=kubus"),
                     QStringLiteral("--meet"), QStringLiteral("--seconden=3")});
    EXPECT_TRUE(regentIn(venster));
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_TRUE(programma.uit().contains("\"tekenaar\":\"cpu\""));
    EXPECT_TRUE(programma.fouten().isEmpty());
}

TEST_F(Gastheer, OpenGlAskedForInVainIsOneLineAndTheProcessorsPicture) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    programma.zet(QStringLiteral("__EGL_VENDOR_LIBRARY_FILENAMES"), QStringLiteral("/er/niet"));
    toonIn(venster, {QStringLiteral("--tekenaar=gl"), QStringLiteral("--meet"),
                     QStringLiteral("--seconden=3")});
    EXPECT_TRUE(regentIn(venster));
    EXPECT_TRUE(programma.wacht());
    EXPECT_EQ(programma.uitgang(), 0);
    EXPECT_TRUE(programma.uit().contains("\"tekenaar\":\"cpu\""));
    EXPECT_EQ(programma.fouten(), "brixtel-saver: OpenGL is er niet; de processor tekent\n");
}

// The loader's account of the files of a program that draws a scene in a window.
QStringList geladen(Xvfb& server, const char* tekenaar) {
    const auto venster = server.makeWindow({.width = 400, .height = 300});
    Programma programma{server.display()};
    programma.zet(QStringLiteral("LD_DEBUG"), QStringLiteral("files"));
    programma.zet(QStringLiteral("LD_DEBUG_OUTPUT"), programma.map() + QStringLiteral("/lader"));
    programma.start({QStringLiteral("--window-id"), QString::number(venster),
                     QStringLiteral("--keuze=kubus"),
                     QStringLiteral("--tekenaar=") + QLatin1String(tekenaar)});
    EXPECT_TRUE(until([&] { return brixtel::aandeelGroen(server.picture(venster)) > 0.01; }));
    const qint64 nummer = programma.nummer();
    kill(static_cast<pid_t>(nummer), SIGTERM);
    EXPECT_TRUE(programma.wacht());
    server.destroy(venster);
    QFile verslag(programma.map() + QStringLiteral("/lader.%1").arg(nummer));
    EXPECT_TRUE(verslag.open(QIODevice::ReadOnly));
    return QString::fromUtf8(verslag.readAll()).split(u'\n');
}

// The libraries of OpenGL that the program loaded or looked for by name while it drew. The four
// that hand OpenGL's calls on to a driver come with Qt Gui, which links them.
QStringList geladenVanOpenGl(Xvfb& server, const char* tekenaar) {
    const QStringList namen =
        geladen(server, tekenaar)
            .filter(QRegularExpression(QStringLiteral("opening file=|dynamically loaded by")));
    EXPECT_FALSE(namen.filter(QStringLiteral("libqxcb.so")).isEmpty());
    return namen.filter(QRegularExpression(
        QStringLiteral("libGL|libEGL|libOpenGL|libepoxy|libgbm|libgallium|_dri\\.so|libLLVM")));
}

TEST_F(Gastheer, WhereTheProcessorDrawsNoOpenGlIsLoadedOrLookedFor) {
    EXPECT_EQ(geladenVanOpenGl(server, "cpu"), QStringList());
    EXPECT_EQ(geladenVanOpenGl(server, "auto"), QStringList());
    EXPECT_FALSE(geladenVanOpenGl(server, "gl").filter(QStringLiteral("libEGL.so.1")).isEmpty());
}

TEST_F(Gastheer, OnlyASessionOfCompositorsLoadsTheirLibraries) {
    const QStringList alles = geladen(server, "cpu");
    EXPECT_EQ(alles.filter(QRegularExpression(QStringLiteral("libwayland|window_wayland\\.so"))),
              QStringList());
    EXPECT_FALSE(alles.filter(QStringLiteral("window_wayland_kind.so")).isEmpty());
}

TEST_F(Gastheer, TheFrameRateIsShownWhenAskedFor) {
    const auto venster = server.makeWindow({.width = 640, .height = 480});
    toonIn(venster, {QStringLiteral("--fps")});
    // The letters are brighter and denser than rain, on a dimmed patch.
    const QRect hoek(16, 16, 190, 26);
    EXPECT_TRUE(until([&] {
        const QImage beeld = server.picture(venster).copy(hoek);
        int letters = 0;
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x)
                letters += beeld.pixel(x, y) == qRgb(0, 255, 65) ? 1 : 0;
        return letters > 40;
    }));
}

}  // namespace
