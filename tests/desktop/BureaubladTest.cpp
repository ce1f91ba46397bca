// SPDX-License-Identifier: MIT
// Both effects on a real desktop: openbox, picom, two displays, real programs.
#include "tests/desktop/Bureaublad.h"
#include "tests/support/BusSaver.h"

#include <QFile>
#include <QtEndian>

#include "desktop/Bovenlaag.h"
#include "desktop/MatrixCentrale.h"
#include "desktop/MatrixView.h"
#include "platform/window/DesktopWorkspace.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/EigenScherm.h"
#include "tests/support/Paden.h"
#include "tests/support/SaverStandIn.h"
#include "tests/support/WindowSystems.h"

using brixtel::Bureaublad;
using brixtel::DrieSoort;
using brixtel::MatrixCentrale;
using brixtel::VreemdProgramma;
using brixtel::RegenStand;
using brixtel::scherm;
using platform::Screen;

namespace {

QString glas;  // the file that the server keeps its picture in

// Two displays of 640 × 480 beside each other.
class TweeSchermen {
  public:
    TweeSchermen() {
        Bureaublad::hulp(QStringLiteral("xrandr --setmonitor links 640/160x480/120+0+0 screen"));
        Bureaublad::hulp(QStringLiteral("xrandr --setmonitor rechts 640/160x480/120+640+0 none"));
        until([] { return Screen::all().size() == 2; });
    }
    ~TweeSchermen() {
        Bureaublad::hulp(QStringLiteral("xrandr --delmonitor rechts"));
        Bureaublad::hulp(QStringLiteral("xrandr --delmonitor links"));
        until([] { return Screen::all().size() == 1; });
    }
    TweeSchermen(const TweeSchermen&) = delete;
    TweeSchermen& operator=(const TweeSchermen&) = delete;
};

class Effecten : public testing::Test {
  protected:
    const TweeSchermen schermen;
    Bureaublad bureaublad;
    DBusDaemon bus;
    platform::SystemClock klok;
    platform::RandomSource toeval{7};
    platform::DistributedNotificationCenter berichten{bus.address()};
    platform::WindowServer server{
        klok, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(klok)}};
    platform::DesktopWorkspace werkruimte{server, berichten};
    std::optional<MatrixCentrale> centrale;

    void SetUp() override {
        ASSERT_TRUE(bureaublad.isKlaar());
        ASSERT_EQ(Screen::all().size(), 2U);
        brixtel::Bovenlaag::begin(nullptr);
        centrale.emplace(brixtel::MatrixCentraleBronnen{
            .server = server, .werkruimte = werkruimte, .toeval = toeval});
        centrale->dichtheid = 1.0;
        bool klaar = false;
        berichten.whenReady([&] { klaar = true; });
        ASSERT_TRUE(until([&] { return klaar; }));
    }
    void TearDown() override {
        centrale.reset();
        Bureaublad::hulp(QStringLiteral("xprop -root -remove _SCREENSAVER_STATUS"));
    }

    [[nodiscard]] bool toonRegen() {
        centrale->toonRegen();
        return until([this] {
            return centrale->regen()[0].venster->statistics().frames > 5 &&
                   centrale->regen()[0].venster->alpha() == 1.0;
        });
    }
    [[nodiscard]] bool toonZwart(std::optional<DrieSoort> drie = std::nullopt) {
        centrale->toonZwart(drie);
        return until([this] {
            return centrale->zwart()[1].venster->statistics().frames > 0 &&
                   centrale->zwart()[0].venster->alpha() == 1.0;
        });
    }
    // Whether this is the top of what can be seen.
    static bool ligtBoven(const platform::Window& venster) {
        return until([&] {
            const auto alle = scherm->mappedWindows();
            return !alle.empty() && alle.back() == xcb_window_t(venster.windowNumber());
        });
    }
    [[nodiscard]] bool regenLigtBoven() const {
        const auto& regen = centrale->regen();
        return until([&] {
            const auto alle = scherm->mappedWindows();
            if (alle.size() < 2) return false;
            const auto is = [&](xcb_window_t id) {
                return id == xcb_window_t(regen[0].venster->windowNumber()) ||
                       id == xcb_window_t(regen[1].venster->windowNumber());
            };
            return is(alle[alle.size() - 1]) && is(alle[alle.size() - 2]);
        });
    }
    // Green pixels per thousand of what a user sees there.
    static int groen(const QRect& deel) {
        int aantal = 0;
        const auto pixels = scherm->pixels(scherm->screen().root, deel);
        for (const std::uint32_t pixel : pixels) {
            const int rood = pixel >> 16 & 255, g = pixel >> 8 & 255, blauw = pixel & 255;
            aantal += g > 90 && g > 2 * rood && g > 2 * blauw;
        }
        return aantal * 1000 / std::max(1, int(pixels.size()));
    }
    static bool regent(const QRect& deel) {
        return until([&] { return groen(deel) >= 5; });
    }
};

const QRect kLinks(0, 0, 640, 480), kRechts(640, 0, 640, 480);

TEST_F(Effecten, TheRainFallsOverARealProgramOnBothDisplays) {
    ASSERT_TRUE(bureaublad.startCompositor());
    VreemdProgramma programma;
    scherm->fill(scherm->screen().root, 0x203040);
    ASSERT_TRUE(toonRegen());
    EXPECT_TRUE(regent(kLinks));
    EXPECT_TRUE(regent(kRechts));
    // The rain falls over the program too, which is white below.
    EXPECT_TRUE(regent({45, 90, 190, 110}));
    const auto pixels = scherm->pixels(scherm->screen().root, {45, 90, 190, 110});
    EXPECT_GT(std::count_if(pixels.begin(), pixels.end(),
                            [](std::uint32_t p) { return (p & 0xffffff) == 0xffffff; }),
              long(pixels.size()) / 4);
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::aan);
}

TEST_F(Effecten, AFullScreenWindowOpenedAfterTheRainGoesUnderIt) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    VreemdProgramma programma;
    const QString id = QString::number(programma.venster);
    Bureaublad::vraagBeheer(programma.venster, "_NET_WM_STATE",
                            {1, Bureaublad::atoom("_NET_WM_STATE_FULLSCREEN")});
    ASSERT_TRUE(until([&] {
        return Bureaublad::hulp(QStringLiteral("xprop -id %1 _NET_WM_STATE").arg(id))
            .contains("FULLSCREEN");
    }));
    Bureaublad::hulp(QStringLiteral("xdotool windowraise ") + id);
    EXPECT_TRUE(regenLigtBoven());
    EXPECT_TRUE(regent(kLinks));
}

TEST_F(Effecten, AMenuOrPanelOpenedLaterGoesUnderTheRainToo) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    // Out of the window manager's hands, as menus are.
    const std::uint32_t waarden[] = {0x808080, 1};
    const xcb_window_t menu = xcb_generate_id(scherm->connection());
    xcb_create_window(scherm->connection(), XCB_COPY_FROM_PARENT, menu, scherm->screen().root, 10,
                      10, 300, 300, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, scherm->screen().root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, waarden);
    scherm->map(menu);
    EXPECT_TRUE(regenLigtBoven());
    scherm->destroy(menu);
}

TEST_F(Effecten, WithoutTheFunctionsTheRainShowsAndALaterWindowCoversIt) {
    ASSERT_TRUE(bureaublad.startCompositor());
    brixtel::Bovenlaag::begin([](const char*) -> void* { return nullptr; });
    ASSERT_TRUE(toonRegen());
    EXPECT_TRUE(regent(kRechts));
    const std::uint32_t waarden[] = {0x808080, 1};
    const xcb_window_t menu = xcb_generate_id(scherm->connection());
    xcb_create_window(scherm->connection(), XCB_COPY_FROM_PARENT, menu, scherm->screen().root, 0, 0,
                      640, 480, 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, scherm->screen().root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_OVERRIDE_REDIRECT, waarden);
    scherm->map(menu);
    const auto frames = [this] { return centrale->regen()[0].venster->statistics().frames; };
    const auto toen = frames();
    ASSERT_TRUE(until([&] { return frames() > toen + 20; }));
    EXPECT_EQ(scherm->mappedWindows().back(), menu);
    scherm->destroy(menu);
}

TEST_F(Effecten, ClicksAndScrollsPassThroughToARealProgram) {
    ASSERT_TRUE(bureaublad.startCompositor());
    VreemdProgramma programma;
    ASSERT_TRUE(toonRegen());
    ASSERT_TRUE(regenLigtBoven());
    Bureaublad::hulp(QStringLiteral("xdotool mousemove --window %1 100 75 click 1 click 4 click 5")
                         .arg(programma.venster));
    EXPECT_TRUE(until([&] { return programma.zegt("button 1") == 2; }));
    EXPECT_TRUE(until([&] { return programma.zegt("button 4") == 2; }));
    EXPECT_TRUE(until([&] { return programma.zegt("button 5") == 2; }));
    // And what is typed.
    Bureaublad::hulp(QStringLiteral("xdotool key x"));
    EXPECT_TRUE(until([&] { return programma.zegt("keysym 0x78, x") == 2; }));
}

TEST_F(Effecten, TheBlackScreenCoversBothDisplaysAndHasTheKeyboard) {
    ASSERT_TRUE(bureaublad.startCompositor());
    VreemdProgramma programma;
    ASSERT_TRUE(toonZwart());
    EXPECT_TRUE(regent(kLinks));
    EXPECT_TRUE(regent(kRechts));
    EXPECT_EQ(Bureaublad::metToetsen(),
              xcb_window_t(centrale->zwart().back().venster->windowNumber()));
    EXPECT_TRUE(until([&] { return centrale->zwart().back().venster->isKey(); }));
    Bureaublad::hulp(QStringLiteral("xdotool key space"));
    EXPECT_TRUE(until([&] { return !centrale->zwartAan(); }));
    EXPECT_EQ(programma.zegt("keysym 0x20"), 0);
}

TEST_F(Effecten, ThePreviouslyActiveWindowHasTheKeyboardAgain) {
    ASSERT_TRUE(bureaublad.startCompositor());
    VreemdProgramma ander;
    VreemdProgramma programma;
    ASSERT_TRUE(until([&] { return Bureaublad::actief() == programma.venster; }));
    ASSERT_TRUE(toonZwart());
    ASSERT_EQ(centrale->vorigeApp()->window.text, QString::number(programma.venster));
    centrale->sluitZwart();
    EXPECT_TRUE(until([&] { return Bureaublad::metToetsen() == programma.venster; }));
    EXPECT_TRUE(until([&] { return Bureaublad::actief() == programma.venster; }));
    // And keeps it once the black windows are gone.
    EXPECT_TRUE(until([&] { return scherm->mappedWindows().size() <= 3; }));
    EXPECT_TRUE(until([&] { return Bureaublad::metToetsen() == programma.venster; }));
    Bureaublad::hulp(QStringLiteral("xdotool key x"));
    EXPECT_TRUE(until([&] { return programma.zegt("keysym 0x78, x") == 2; }));
    EXPECT_EQ(ander.zegt("keysym 0x78, x"), 0);
}

TEST_F(Effecten, WithoutAWindowManagerTheKeyboardGoesBackAsWell) {
    VreemdProgramma programma;
    // The window manager leaves its property behind, which says that it runs.
    bureaublad.stopBeheer();
    // An ending window manager takes windows out of its frames, which hides them for a moment.
    ASSERT_TRUE(until([&] {
        xcb_set_input_focus(scherm->connection(), XCB_INPUT_FOCUS_PARENT, programma.venster,
                            XCB_CURRENT_TIME);
        return Bureaublad::metToetsen() == programma.venster;
    }));
    ASSERT_TRUE(toonZwart());
    EXPECT_NE(Bureaublad::metToetsen(), programma.venster);
    centrale->sluitZwart();
    EXPECT_TRUE(until([&] { return Bureaublad::metToetsen() == programma.venster; }));
}

TEST_F(Effecten, ARealMouseMovementClosesTheBlackScreenAfterTheGraceTime) {
    Bureaublad::hulp(QStringLiteral("xdotool mousemove 100 100"));
    ASSERT_TRUE(toonZwart(DrieSoort::kubus));
    const double begin = klok.now();
    ASSERT_TRUE(until([&] { return klok.now() - begin > 1.0; }));
    const auto& view =
        dynamic_cast<const brixtel::MatrixView&>(*centrale->zwart().front().venster->contentView());
    Bureaublad::hulp(QStringLiteral("xdotool mousemove 110 100"));
    ASSERT_TRUE(until([&] { return view.beginPunt().has_value(); }));
    Bureaublad::hulp(QStringLiteral("xdotool mousemove 150 100"));
    EXPECT_TRUE(centrale->zwartAan());
    Bureaublad::hulp(QStringLiteral("xdotool mousemove 170 100"));
    EXPECT_TRUE(until([&] { return !centrale->zwartAan(); }));
}

TEST_F(Effecten, AWindowThatOpensUnderTheBlackScreenGetsNothing) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonZwart());
    VreemdProgramma programma;
    EXPECT_TRUE(ligtBoven(*centrale->zwart()[1].venster) ||
                ligtBoven(*centrale->zwart()[0].venster));
    // openbox gave it the keyboard; the black screen takes that back.
    EXPECT_TRUE(until([&] {
        return Bureaublad::metToetsen() ==
               xcb_window_t(centrale->zwart().back().venster->windowNumber());
    }));
}

TEST_F(Effecten, AnApplicationThatIsGoneTakesNobodyToAnotherDesktop) {
    const auto zegt = [](const char* vraag) {
        return Bureaublad::hulp(QStringLiteral("xdotool ") + QLatin1String(vraag)).trimmed();
    };
    zegt("set_num_desktops 2");
    zegt("set_desktop 1");
    ASSERT_TRUE(until([&] { return zegt("get_desktop") == "1"; }));
    {
        VreemdProgramma programma;
        ASSERT_TRUE(toonZwart());
        ASSERT_EQ(centrale->vorigeApp()->window.text, QString::number(programma.venster));
    }
    ASSERT_TRUE(until([] { return Bureaublad::beheerde().isEmpty(); }));
    centrale->sluitZwart();
    // The window manager handles requests in order, so an answer comes after the closing.
    zegt("set_num_desktops 3");
    ASSERT_TRUE(until([&] { return zegt("get_num_desktops") == "3"; }));
    EXPECT_EQ(zegt("get_desktop"), "1");
}

TEST_F(Effecten, AWindowManagerThatComesAnewDoesNotKeepTheKeyboard) {
    ASSERT_TRUE(toonZwart());
    const auto zwart = xcb_window_t(centrale->zwart().back().venster->windowNumber());
    ASSERT_TRUE(until([=] { return Bureaublad::metToetsen() == zwart; }));
    bureaublad.stopBeheer();
    const Openbox ander{scherm->display()};
    ASSERT_TRUE(ander.isReady());
    EXPECT_TRUE(until([=] { return Bureaublad::metToetsen() == zwart; }));
    // The keyboard stays there: a key closes the black screen.
    EXPECT_TRUE(until([this] {
        if (centrale->zwartAan()) Bureaublad::hulp(QStringLiteral("xdotool key a"));
        return !centrale->zwartAan();
    }));
}

TEST_F(Effecten, WhatHasFadedInIsSeenWholeAlsoWhenNothingElseHappens) {
    ASSERT_TRUE(bureaublad.startCompositor());
    scherm->fill(scherm->screen().root, 0xffffff);
    centrale->dichtheid = 0.0;
    ASSERT_TRUE(toonZwart());
    const QString id = QString::number(centrale->zwart()[0].venster->windowNumber());
    EXPECT_TRUE(until([&] {
        return Bureaublad::hulp(QStringLiteral("xprop -id %1 _NET_WM_WINDOW_OPACITY").arg(id))
            .contains("= 4294967295");
    }));
    centrale->sluitZwart();
    centrale->dichtheid = 1.0;
    ASSERT_TRUE(toonRegen());
    const QString regen = QString::number(centrale->regen()[0].venster->windowNumber());
    EXPECT_TRUE(until([&] {
        return Bureaublad::hulp(QStringLiteral("xprop -id %1 _NET_WM_WINDOW_OPACITY").arg(regen))
            .contains("= 4294967295");
    }));
}

TEST_F(Effecten, OverTheRainTheBlackScreenIsBlackAndTheRainComesBack) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    ASSERT_TRUE(toonZwart(DrieSoort::logo));
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    EXPECT_TRUE(ligtBoven(*centrale->zwart()[1].venster) ||
                ligtBoven(*centrale->zwart()[0].venster));
    centrale->sluitZwart();
    EXPECT_TRUE(until([&] { return centrale->regen()[0].venster->alpha() == 1.0; }));
    EXPECT_TRUE(regenLigtBoven());
    EXPECT_TRUE(regent(kLinks));
}

TEST_F(Effecten, WithoutACompositorTheDesktopStaysToBeSeenAndTheRainComesUpWithOne) {
    scherm->fill(scherm->screen().root, 0x203040);
    centrale->toonRegen();
    EXPECT_EQ(centrale->regenStand().waarde(), RegenStand::geenCompositor);
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    EXPECT_EQ(groen(kLinks), 0);
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(until([&] { return centrale->regenStand().waarde() == RegenStand::aan; }));
    EXPECT_TRUE(regent(kLinks));
    EXPECT_TRUE(regenLigtBoven());
    ASSERT_TRUE(bureaublad.stopCompositor());
    EXPECT_TRUE(
        until([&] { return centrale->regenStand().waarde() == RegenStand::geenCompositor; }));
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
}

TEST_F(Effecten, XscreensaverHidesTheRainAndItReturns) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    const SaverStandIn daemon(*scherm);
    daemon.blank();
    ASSERT_TRUE(
        until([&] { return centrale->regenStand().waarde() == RegenStand::schermbeveiliging; }));
    EXPECT_FALSE(centrale->regen()[0].venster->isVisible());
    daemon.unblank();
    ASSERT_TRUE(until([&] { return centrale->regenStand().waarde() == RegenStand::aan; }));
    EXPECT_TRUE(regent(kLinks));
    EXPECT_TRUE(regenLigtBoven());
}

TEST_F(Effecten, AfterAnXscreensaverThatWasKilledTheRainReturns) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    {
        const SaverStandIn daemon(*scherm);
        daemon.blank();
        ASSERT_TRUE(until(
            [&] { return centrale->regenStand().waarde() == RegenStand::schermbeveiliging; }));
    }
    ASSERT_TRUE(until([&] { return centrale->regenStand().waarde() == RegenStand::aan; }));
    EXPECT_TRUE(regent(kLinks));
}

TEST_F(Effecten, ADesktopsOwnLockHidesTheRainAndItReturns) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    BusSaver slot(bus.address());
    ASSERT_TRUE(slot.say(true));
    ASSERT_TRUE(
        until([&] { return centrale->regenStand().waarde() == RegenStand::schermbeveiliging; }));
    ASSERT_TRUE(slot.say(false));
    ASSERT_TRUE(until([&] { return centrale->regenStand().waarde() == RegenStand::aan; }));
    EXPECT_TRUE(regent(kRechts));
}

TEST_F(Effecten, ADisplayThatGoesAndComesIsFollowed) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    ASSERT_TRUE(toonZwart(DrieSoort::kubus));
    Bureaublad::hulp(QStringLiteral("xrandr --delmonitor rechts"));
    ASSERT_TRUE(until([&] { return centrale->zwart().size() == 1; }));
    EXPECT_EQ(centrale->regen().size(), 1U);
    EXPECT_EQ(centrale->drieWerelden().size(), 1U);
    // The keyboard goes to the remaining display's window.
    const platform::Window& over = *centrale->zwart()[0].venster;
    EXPECT_TRUE(until([&] {
        return Bureaublad::metToetsen() == static_cast<xcb_window_t>(over.windowNumber());
    }));
    Bureaublad::hulp(QStringLiteral("xrandr --setmonitor rechts 640/160x480/120+640+0 none"));
    ASSERT_TRUE(until([&] { return centrale->zwart().size() == 2; }));
    EXPECT_EQ(centrale->regen().size(), 2U);
    EXPECT_EQ(centrale->drieWerelden().size(), 2U);
    EXPECT_EQ(centrale->zwart()[1].venster->alpha(), 1.0);
    centrale->sluitZwart();
    EXPECT_TRUE(until([&] { return centrale->regen()[1].venster->alpha() == 1.0; }));
    EXPECT_TRUE(regent(kRechts));
}

TEST_F(Effecten, ADisplayThatComesBackElsewhereAndTurnedIsFollowed) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(toonRegen());
    ASSERT_TRUE(toonZwart());
    const auto* const links = centrale->zwart()[0].venster.get();
    Bureaublad::hulp(QStringLiteral("xrandr --delmonitor rechts"));
    ASSERT_TRUE(until([&] { return centrale->zwart().size() == 1; }));
    Bureaublad::hulp(QStringLiteral("xrandr --setmonitor rechts 360/120x480/160+800+0 none"));
    ASSERT_TRUE(until([&] { return centrale->zwart().size() == 2; }));
    const QRectF vlak(800, 0, 360, 480);
    EXPECT_EQ(centrale->zwart()[1].venster->frame(), vlak);
    EXPECT_EQ(centrale->zwart()[1].regen->laag()->bounds().size(), vlak.size());
    EXPECT_EQ(centrale->zwart()[0].venster.get(), links);
    ASSERT_EQ(centrale->regen().size(), 2U);
    EXPECT_EQ(centrale->regen()[1].venster->frame(), vlak);
    EXPECT_EQ(centrale->regen()[1].venster->alpha(), 0.0);
}

// One display, in the modes that it can be set to.
class EenScherm : public Effecten {
  protected:
    void SetUp() override {
        Effecten::SetUp();
        Bureaublad::hulp(QStringLiteral("xrandr --delmonitor rechts"));
        Bureaublad::hulp(QStringLiteral("xrandr --delmonitor links"));
        ASSERT_TRUE(until([] { return Screen::all().size() == 1; }));
        maakStand(QStringLiteral("600x400"), 600, 400);
        maakStand(QStringLiteral("400x460"), 400, 460);
    }
    void TearDown() override {
        zetStand(QStringLiteral("1280x480"));
        Effecten::TearDown();
    }
    static void maakStand(const QString& naam, int b, int h) {
        Bureaublad::hulp(QStringLiteral("xrandr --newmode %1 25 %2 %3 %4 %5 %6 %7 %8 %9")
                             .arg(naam)
                             .arg(b)
                             .arg(b + 10)
                             .arg(b + 20)
                             .arg(b + 40)
                             .arg(h)
                             .arg(h + 5)
                             .arg(h + 10)
                             .arg(h + 20));
        Bureaublad::hulp(QStringLiteral("xrandr --addmode screen ") + naam);
    }
    static void zetStand(const QString& naam) {
        Bureaublad::hulp(QStringLiteral("xrandr --output screen --mode ") + naam);
    }
    [[nodiscard]] bool volgt(QSizeF maat) const {
        return until([&] {
            return centrale->zwart().size() == 1 && centrale->regen().size() == 1 &&
                   centrale->zwart()[0].venster->frame().size() == maat &&
                   centrale->zwart()[0].regen->laag()->bounds().size() == maat &&
                   centrale->regen()[0].venster->frame().size() == maat &&
                   centrale->regen()[0].regen->laag()->bounds().size() == maat;
        });
    }
};

TEST_F(EenScherm, ADisplayThatIsResizedOrTurnedIsFollowed) {
    ASSERT_TRUE(bureaublad.startCompositor());
    ASSERT_TRUE(until([&] { return werkruimte.isComposited(); }));
    centrale->toonRegen();
    ASSERT_TRUE(until([&] { return centrale->zwart().empty() && centrale->regen().size() == 1; }));
    centrale->toonZwart(std::nullopt);
    zetStand(QStringLiteral("600x400"));
    EXPECT_TRUE(volgt({600, 400}));
    zetStand(QStringLiteral("400x460"));
    EXPECT_TRUE(volgt({400, 460}));
    EXPECT_EQ(centrale->zwart()[0].venster->alpha(), 1.0);
    EXPECT_EQ(centrale->regen()[0].venster->alpha(), 0.0);
    centrale->sluitZwart();
    EXPECT_TRUE(until([&] { return centrale->regen()[0].venster->alpha() == 1.0; }));
    EXPECT_TRUE(regent({0, 0, 400, 460}));
}

// The server's screen with the pointer, as Xvfb keeps it in a file of format XWD(5). An
// image request leaves the pointer out.
QByteArray opHetGlas(const QRect& deel) {
    QFile bestand(glas);
    if (!bestand.open(QIODevice::ReadOnly)) return {};
    const auto getal = [&](int plaats) {
        bestand.seek(4 * plaats);
        return qint64(qFromBigEndian<quint32>(bestand.read(4).constData()));
    };
    constexpr int kRegel = 12, kKleuren = 19, kKleurMaat = 12;
    const qint64 begin = getal(0) + getal(kKleuren) * kKleurMaat, regel = getal(kRegel);
    QByteArray pixels;
    for (int y = deel.top(); y <= deel.bottom(); ++y) {
        bestand.seek(begin + y * regel + deel.left() * 4);
        pixels += bestand.read(deel.width() * 4);
    }
    return pixels;
}

// Whether the pointer can be seen at a place that it is on.
bool isMuisTeZien(QPoint plaats) {
    const QRect deel(plaats - QPoint(4, 4), QSize(24, 24));
    const auto zonder = scherm->pixels(scherm->screen().root, deel);
    const QByteArray met = opHetGlas(deel);
    for (qsizetype i = 0; i < qsizetype(zonder.size()); ++i) {
        const auto pixel = qFromLittleEndian<quint32>(met.constData() + 4 * i);
        if ((pixel & 0xffffff) != (zonder[std::size_t(i)] & 0xffffff)) return true;
    }
    return false;
}

class Muis : public testing::TestWithParam<bool> {};

TEST_P(Muis, IsVisibleAgainAlsoWhenTheOwnerIsKilledDuringTheBlackScreen) {
    const bool gedood = GetParam();
    const QPoint plaats(300, 200);
    scherm->fill(scherm->screen().root, 0x336699);
    Bureaublad::hulp(QStringLiteral("xsetroot -cursor_name left_ptr"));
    Bureaublad::hulp(QStringLiteral("xdotool mousemove 300 200"));
    ASSERT_TRUE(until([&] { return isMuisTeZien(plaats); }));
    QProcess eigenaar;
    Bureaublad::begin(eigenaar, QStringLiteral(BRIXTEL_BUILD_DIR "/tests/centrale_programma"),
                      {QStringLiteral("zwart")});
    ASSERT_TRUE(eigenaar.waitForReadyRead(20'000));
    ASSERT_TRUE(eigenaar.readLine().startsWith("getoond"));
    // Now and then a drop falls between the two looks.
    int achtereen = 0;
    EXPECT_TRUE(until([&] {
        achtereen = isMuisTeZien(plaats) ? 0 : achtereen + 1;
        return achtereen == 5;
    }));
    if (gedood) {
        eigenaar.kill();
        ASSERT_TRUE(eigenaar.waitForFinished(10'000));
    } else {
        Bureaublad::hulp(QStringLiteral("xdotool click 1"));
    }
    ASSERT_TRUE(until([] { return scherm->mappedWindows().empty(); }));
    EXPECT_TRUE(until([&] { return isMuisTeZien(plaats); }));
    eigenaar.kill();
    eigenaar.waitForFinished(10'000);
}

INSTANTIATE_TEST_SUITE_P(Effecten, Muis, testing::Values(false, true),
                         [](const auto& wijze) { return wijze.param ? "Killed" : "ByAClick"; });

}  // namespace

int main(int argc, char** argv) {
    return steun::draaiOpEigenScherm(argc, argv, {.scherm = "1280x480x24", .metGlas = true},
                                     [](Xvfb& server, const QString& thuis) {
                                         scherm = &server;
                                         glas = thuis + QStringLiteral("/Xvfb_screen0");
                                     });
}
