// SPDX-License-Identifier: MIT
// The owner and the saver on real compositors: with a layer shell, without one, and through
// the compositor's X server.
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <QStandardPaths>
#include <algorithm>
#include <utility>

#include "drawing/Thema.h"
#include "tests/hosts/saver/Programma.h"
#include "tests/support/Contrast.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/wayland/Compositor.h"
#include "tests/support/wayland/Kwin.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/VirtualKeyboard.h"
#include "tests/support/wayland/VirtualPointer.h"
#include "tests/support/wayland/Weston.h"

namespace {

using brixtel::aandeelGroen;
using brixtel::Programma;
using wltest::Sway;
using wltest::VirtualKeyboard;

const QStringList kX11{QStringLiteral("--venstersysteem=x11")};

// A program in the session of a compositor: with its own home and the session's bus.
struct InSessie : Programma {
    InSessie(const QString& pad, const DBusDaemon& bus) : Programma({}, pad) {
        zet(QStringLiteral("XDG_RUNTIME_DIR"), map());
        zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus.address());
        zet(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
    }
    InSessie& opWayland(const QString& adres) {
        zet(QStringLiteral("WAYLAND_DISPLAY"), adres);
        return *this;
    }
    InSessie& opX11(const QString& display) {
        zet(QStringLiteral("DISPLAY"), display);
        return *this;
    }
};

class OpWayland : public testing::Test {
  protected:
    DBusDaemon bus;

    void SetUp() override { ASSERT_FALSE(bus.address().isEmpty()); }

    struct Afloop {
        int uitgang;
        QString uit, fouten;
    };
    // Runs the owner's program as a client of a running owner.
    [[nodiscard]] Afloop vraag(const char* woord) const {
        InSessie klant(brixtel::bureauPad(), bus);
        klant.draai({QLatin1String(woord)});
        return {klant.uitgang(), QString::fromUtf8(klant.uit()), QString::fromUtf8(klant.fouten())};
    }
    // A property of the running owner, as dbus-send prints it.
    [[nodiscard]] QByteArray eigenschap(const char* naam) const {
        QProcess vrager;
        vrager.start(QStringLiteral("dbus-send"),
                     {QStringLiteral("--bus=") + bus.address(), QStringLiteral("--print-reply"),
                      QStringLiteral("--dest=nl.groenlicht.brixtel.Bureau"),
                      QStringLiteral("/nl/groenlicht/brixtel/Bureau"),
                      QStringLiteral("org.freedesktop.DBus.Properties.Get"),
                      QStringLiteral("string:nl.groenlicht.brixtel.Bureau"),
                      QStringLiteral("string:") + QLatin1String(naam)});
        vrager.waitForFinished();
        return vrager.readAllStandardOutput();
    }
    [[nodiscard]] bool antwoordt() const {
        return until([this] { return vraag("--stand").uitgang == 0; });
    }

    // The rain is refused by a start of its own, and by a running owner.
    void weigertDeRegen(const std::function<void(InSessie&)>& plaats, const QStringList& meer,
                        const char* stand, const char* reden) {
        InSessie alleen(brixtel::bureauPad(), bus);
        plaats(alleen);
        alleen.draai(meer + QStringList{QStringLiteral("--toon-regen")});
        EXPECT_EQ(alleen.uitgang(), 1);
        const QByteArray fouten = alleen.fouten();
        EXPECT_EQ(fouten.count('\n'), 1) << fouten.toStdString();
        EXPECT_TRUE(fouten.startsWith(QByteArray("brixtel-bureau: ") + reden))
            << fouten.toStdString();

        InSessie eigenaar(brixtel::bureauPad(), bus);
        plaats(eigenaar);
        eigenaar.start(meer + QStringList{QStringLiteral("--dienst")});
        ASSERT_TRUE(antwoordt());
        EXPECT_TRUE(eigenschap("RegenStand").contains("\"uit\""));
        const Afloop afloop = vraag("--toon-regen");
        EXPECT_EQ(afloop.uitgang, 1);
        EXPECT_TRUE(afloop.fouten.contains(QLatin1String(reden))) << afloop.fouten.toStdString();
        EXPECT_TRUE(eigenschap("RegenStand").contains(QByteArray("\"") + stand + "\""));
        EXPECT_TRUE(eigenschap("RegenAan").contains("false"));
        EXPECT_TRUE(eigenaar.loopt());
        EXPECT_EQ(vraag("--stop").uitgang, 0);
        EXPECT_TRUE(eigenaar.wacht());
        EXPECT_EQ(eigenaar.uitgang(), 0);
    }
};

bool isAchtergrond(Sway& sway, const char* scherm) {
    return until([&] {
        const QImage beeld = sway.picture(QLatin1String(scherm));
        return !beeld.isNull() && beeld.pixel(100, 100) == Sway::kBackground &&
               aandeelGroen(beeld) == 0.0;
    });
}

// Whether the output comes to show rain on all of it.
bool isRegen(Sway& sway, const char* scherm) {
    return until([&] {
        const QImage beeld = sway.picture(QLatin1String(scherm));
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x)
                if (beeld.pixel(x, y) == Sway::kBackground) return false;
        return aandeelGroen(beeld) > 0.005;
    });
}

// --- the owner on a compositor of the test's own ---

struct EigenaarOpWayland : OpWayland {
    static wltest::Options metSloten() {
        wltest::Options opties;
        opties.globals.sessionLock = true;
        opties.frames = wltest::Frames::Always;
        return opties;
    }
    void begin(const QStringList& woorden) {
        eigenaar.opWayland(compositor.address());
        eigenaar.start(woorden);
        ASSERT_TRUE(antwoordt());
    }
    bool toont(std::size_t vensters) {
        return until([&] { return compositor.shown().size() == vensters; });
    }

    wltest::Compositor compositor{metSloten()};
    InSessie eigenaar{brixtel::bureauPad(), bus};
};

TEST_F(EigenaarOpWayland, EenSlotSluitHetZwarteSchermVanDeRust) {
    begin({QStringLiteral("--rust=1"), QStringLiteral("--dienst")});
    ASSERT_TRUE(until([&] { return !compositor.idleTimes().empty(); }));
    compositor.setIdle(true);
    ASSERT_TRUE(until([&] { return compositor.keyboardFocus() != 0; }));
    ASSERT_TRUE(toont(1));
    EXPECT_TRUE(eigenschap("ZwartAan").contains("true"));
    compositor.setLocked(true);
    EXPECT_TRUE(toont(0));
    EXPECT_TRUE(eigenschap("ZwartAan").contains("false"));
    EXPECT_EQ(compositor.keyboardFocus(), 0U);
    EXPECT_TRUE(eigenaar.loopt());
}

TEST_F(EigenaarOpWayland, EenZwartSchermOnderEenSlotIsErDaarnaNog) {
    begin({QStringLiteral("--toon-zwart")});
    ASSERT_TRUE(until([&] { return compositor.keyboardFocus() != 0; }));
    compositor.setLocked(true);
    ASSERT_TRUE(until([&] { return compositor.shown().at(0).keyboard == 0; }));
    EXPECT_EQ(compositor.keyboardFocus(), 0U);
    compositor.setLocked(false);
    ASSERT_TRUE(until([&] { return compositor.keyboardFocus() != 0; }));
    EXPECT_TRUE(eigenschap("ZwartAan").contains("true"));
}

TEST_F(EigenaarOpWayland, EenCompositorDieVerdwijntIsEenStilEinde) {
    begin({QStringLiteral("--toon-regen")});
    ASSERT_TRUE(toont(1));
    compositor.die();
    EXPECT_TRUE(eigenaar.wacht());
    EXPECT_EQ(eigenaar.uitgang(), 0);
    EXPECT_EQ(eigenaar.fouten(), QByteArray());
}

TEST_F(EigenaarOpWayland, EenProtocolfoutIsEenRegelEnUitgangEen) {
    begin({QStringLiteral("--toon-regen")});
    ASSERT_TRUE(toont(1));
    compositor.postError();
    EXPECT_TRUE(eigenaar.wacht());
    EXPECT_EQ(eigenaar.uitgang(), 1);
    const QByteArray fouten = eigenaar.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.toStdString();
    EXPECT_TRUE(fouten.startsWith("brixtel-bureau: het venstersysteem verbrak de verbinding"));
}

// --- real compositors ---

TEST_F(OpWayland, ZonderBovenlagenWeigertDeRegenMetEenRegel) {
    const wltest::Weston weston;
    if (!weston.isRunning()) GTEST_SKIP() << weston.reason();
    weigertDeRegen([&](InSessie& p) { p.opWayland(weston.address()); }, {}, "geen-bovenlaag",
                   "dit bureaublad heeft geen plaats boven alle vensters");
}

// A terminal that writes down each click that it gets: "M" for a press, "m" for a release.
TEST_F(OpWayland, DuizendKlikkenGaanDoorDeRegenNaarEenTerminal) {
    if (QStandardPaths::findExecutable(QStringLiteral("foot")).isEmpty())
        GTEST_SKIP() << "foot is not installed";
    Sway sway(1, "default_border none\n");
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    InSessie eigenaar(brixtel::bureauPad(), bus);
    const QString gehoord = eigenaar.map() + QStringLiteral("/klikken");
    Programma terminal({}, QStringLiteral("foot"));
    terminal.zet(QStringLiteral("XDG_RUNTIME_DIR"), eigenaar.map());
    terminal.zet(QStringLiteral("WAYLAND_DISPLAY"), sway.address());
    terminal.start(
        {QStringLiteral("sh"), QStringLiteral("-c"),
         QStringLiteral("stty raw -echo; printf '\\033[?1000h\\033[?1006h'; exec cat >") +
             gehoord});
    const auto alles = [&] {
        QFile bestand(gehoord);
        return bestand.open(QIODevice::ReadOnly) ? bestand.readAll() : QByteArray();
    };
    const auto aantal = [&](char soort) { return alles().count(soort); };
    wltest::VirtualPointer muis(sway.address());
    ASSERT_TRUE(muis.isThere());
    eigenaar.opWayland(sway.address()).start({QStringLiteral("--toon-regen")});
    ASSERT_TRUE(isRegen(sway, "HEADLESS-1"))
        << eigenaar.fouten().toStdString() << terminal.fouten().toStdString();
    // The first clicks are only sure once the terminal knows of the mouse.
    const auto klik = [&](int x, int y) {
        muis.moveTo({x, y}, {640, 480});
        muis.click();
    };
    ASSERT_TRUE(until([&] {
        klik(100, 100);
        return aantal('m') > 0;
    })) << terminal.fouten().toStdString();
    // Clicks are heard in their order: after one in another cell none is under way.
    const QByteArray cel = alles().split('<').value(1).split('M').value(0);
    klik(600, 440);
    ASSERT_TRUE(until([&] {
        const QByteArray gezegd = alles();
        return gezegd.endsWith('m') && gezegd.mid(gezegd.lastIndexOf('<') + 1).chopped(1) != cel;
    }));
    const qsizetype vooraf = aantal('m');
    for (int i = 0; i < 1000; ++i)
        klik(40 + 37 * i % 500, 40 + 53 * i % 380);
    EXPECT_TRUE(until([&] { return aantal('m') >= vooraf + 1000; })) << aantal('m') - vooraf;
    EXPECT_EQ(aantal('M'), vooraf + 1000);
    EXPECT_EQ(aantal('m'), vooraf + 1000);
}

TEST_F(OpWayland, DoorXwaylandWeigertDeRegenMetEenRegel) {
    Sway sway(1, "xwayland force\n");
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    const QString display = sway.xDisplay();
    weigertDeRegen([&](InSessie& p) { p.opWayland(sway.address()).opX11(display); }, kX11,
                   "geen-doorklik", "klikken zouden de vensters eronder niet bereiken");
    EXPECT_TRUE(isAchtergrond(sway, "HEADLESS-1"));
}

TEST_F(OpWayland, DoorXwaylandBedektHetZwarteSchermAllesTotEenToets) {
    Sway sway(2, "xwayland force\n");
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    VirtualKeyboard toetsen(sway.address());
    ASSERT_TRUE(toetsen.isThere());
    InSessie eigenaar(brixtel::bureauPad(), bus);
    // Only the X server is there.
    eigenaar.opX11(sway.xDisplay()).start({QStringLiteral("--toon-zwart")});
    ASSERT_TRUE(isRegen(sway, "HEADLESS-1")) << eigenaar.fouten().toStdString();
    ASSERT_TRUE(isRegen(sway, "HEADLESS-2"));
    toetsen.type(KEY_SPACE);
    EXPECT_TRUE(isAchtergrond(sway, "HEADLESS-1"));
    EXPECT_TRUE(isAchtergrond(sway, "HEADLESS-2"));
    EXPECT_TRUE(eigenaar.loopt());
}

TEST_F(OpWayland, DoorXwaylandHeeftElkSchermZijnSaver) {
    Sway sway(2, "xwayland force\n");
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    VirtualKeyboard toetsen(sway.address());
    ASSERT_TRUE(toetsen.isThere());
    InSessie saver(brixtel::programmaPad(), bus);
    saver.opX11(sway.xDisplay()).start({QStringLiteral("--keuze=regen")});
    for (const char* scherm : {"HEADLESS-1", "HEADLESS-2"})
        ASSERT_TRUE(isRegen(sway, scherm)) << scherm << saver.fouten().toStdString();
    // A display that is plugged in later is covered too.
    ASSERT_TRUE(sway.command("create_output"));
    EXPECT_TRUE(isRegen(sway, "HEADLESS-3"));
    toetsen.type(KEY_SPACE);
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
}

TEST_F(OpWayland, HetPaneelIsTeZienEnTeBedienen) {
    Sway sway(1);
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    VirtualKeyboard toetsen(sway.address());
    ASSERT_TRUE(toetsen.isThere());
    InSessie eigenaar(brixtel::bureauPad(), bus);
    eigenaar.opWayland(sway.address()).start({});
    ASSERT_TRUE(until([&] { return sway.tree().contains("\"name\": \"Instellingen"); }))
        << eigenaar.fouten().toStdString();
    // The panel's own black and green, where the background was.
    ASSERT_TRUE(until([&] {
        const QImage beeld = sway.picture();
        return !beeld.isNull() && beeld.pixel(100, 100) != Sway::kBackground &&
               aandeelGroen(beeld) > 0.005;
    }));
    // The running picture, in its place at the top of the panel's own scene.
    const auto voorbeeld = [&] { return sway.picture().copy(40, 20, 540, 60); };
    const QImage eerst = voorbeeld();
    EXPECT_TRUE(until([&] {
        const QImage nu = voorbeeld();
        return !nu.isNull() && aandeelGroen(nu) > 0.005 && nu != eerst;
    }));
    toetsen.type(KEY_ESC);
    EXPECT_TRUE(isAchtergrond(sway, "HEADLESS-1"));
    EXPECT_FALSE(sway.tree().contains("\"name\": \"Instellingen"));
    EXPECT_EQ(vraag("--stand").uitgang, 0);
}

// The part of the output beside the panel's controls, where the panel itself is black.
QImage naastHetPaneel(Sway& sway) {
    constexpr int kBreed = 340;
    const QImage beeld = sway.picture();
    return beeld.copy(0, 0, kBreed, beeld.height());
}

int meesteGroen(const QImage& beeld) {
    int meeste = 0;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x)
            meeste = std::max(meeste, qGreen(beeld.pixel(x, y)));
    return meeste;
}

// The compositor places the panel, and tells the program no place to leave free.
TEST_F(OpWayland, HetPaneelIsTeLezenOnderDeRegen) {
    Sway sway(1);
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    // The panel's controls leave room at both sides.
    ASSERT_TRUE(sway.command("output HEADLESS-1 mode 1280x480@60Hz"));
    VirtualKeyboard toetsen(sway.address());
    ASSERT_TRUE(toetsen.isThere());
    InSessie eigenaar(brixtel::bureauPad(), bus);
    eigenaar.opWayland(sway.address())
        .start({QStringLiteral("--toon-regen"), QStringLiteral("--dichtheid=1")});
    ASSERT_TRUE(until([&] { return meesteGroen(naastHetPaneel(sway)) > 200; }))
        << eigenaar.fouten().toStdString();
    EXPECT_EQ(vraag("--paneel").uitgang, 0);
    const QRgb grond = brixtel::Thema::zwart().rgb();
    // The panel fills the output, and the rain over it is faint.
    QImage eerst;
    ASSERT_TRUE(until([&] {
        eerst = naastHetPaneel(sway);
        return !eerst.isNull() && meesteGroen(eerst) < 60;
    }));
    QRgb felst = grond;
    int anders = 0;
    ASSERT_TRUE(until([&] {
        const QImage nu = naastHetPaneel(sway);
        if (std::exchange(eerst, nu) == nu) return false;
        for (int y = 0; y < nu.height(); ++y)
            for (int x = 0; x < nu.width(); ++x)
                if (contrast(nu.pixel(x, y), grond) > contrast(felst, grond))
                    felst = nu.pixel(x, y);
        return ++anders == 10;
    }));
    EXPECT_GE(contrast(brixtel::Thema::middel().rgb(), felst), 4.5);
    // It goes on falling, to be seen.
    EXPECT_GT(contrast(felst, grond), 1.1);
    toetsen.type(KEY_ESC);
    EXPECT_TRUE(until([&] { return meesteGroen(naastHetPaneel(sway)) > 200; }));
}

// On the compositor, and through its X server.
class BladOpWayland : public OpWayland, public testing::WithParamInterface<bool> {};

TEST_P(BladOpWayland, HetBladIsTeZienEnTeBedienenOverDeSaver) {
    Sway sway(1, GetParam() ? "xwayland force\n" : "");
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    VirtualKeyboard toetsen(sway.address());
    ASSERT_TRUE(toetsen.isThere());
    // There before the sheet: a client misses a click of a pointer that it has not heard of.
    wltest::VirtualPointer muis(sway.address());
    ASSERT_TRUE(muis.isThere());
    InSessie saver(brixtel::programmaPad(), bus);
    if (GetParam())
        saver.opX11(sway.xDisplay());
    else
        saver.opWayland(sway.address());
    saver.start({QStringLiteral("--keuze=regen")});
    ASSERT_TRUE(isRegen(sway, "HEADLESS-1")) << saver.fouten().toStdString();
    toetsen.type(KEY_I);
    ASSERT_TRUE(until([&] { return sway.tree().contains("brixtel-saver"); }));
    // The saver steps aside: the sheet is seen, and around it no rain. The sheet stands at
    // its place once the picture stays the same.
    QImage stil;
    int gelijk = 0;
    ASSERT_TRUE(until([&] {
        const QImage beeld = sway.picture();
        const bool isBlad =
            !beeld.isNull() && aandeelGroen(beeld) > 0.001 && !brixtel::isRegen(beeld);
        gelijk = isBlad && beeld == stil ? gelijk + 1 : 0;
        stil = beeld;
        return gelijk == 3;
    }));
    // The cube, and the button below it.
    const auto klik = [&](const QPoint& plek) {
        muis.moveTo(plek, {640, 480});
        muis.click();
    };
    klik({161, 260});
    ASSERT_TRUE(until([&] { return sway.picture() != stil; }));
    klik({445, 352});
    EXPECT_TRUE(until([&] {
        const QImage beeld = sway.picture();
        return !sway.tree().contains("brixtel-saver") && !beeld.isNull() &&
               beeld.pixel(10, 10) != Sway::kBackground;
    }));
    EXPECT_TRUE(saver.loopt());
    // The sheet is a process of its own, which writes as it ends.
    EXPECT_TRUE(until([&] {
        QFile bewaard(saver.map() + QStringLiteral("/.config/nl.groenlicht.brixtel.saver.conf"));
        return bewaard.open(QIODevice::ReadOnly) && bewaard.readAll().contains("kubus");
    }));
    toetsen.type(KEY_SPACE);
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
}

INSTANTIATE_TEST_SUITE_P(Wegen, BladOpWayland, testing::Bool(),
                         [](const auto& een) { return een.param ? "DoorXwayland" : "Wayland"; });

TEST_F(OpWayland, OpKwinDraaitDeSaverEnRegentHetBovenAlles) {
    const wltest::Kwin kwin(bus.address());
    if (!kwin.isRunning()) GTEST_SKIP() << kwin.reason();
    InSessie saver(brixtel::programmaPad(), bus);
    saver.opWayland(kwin.address())
        .draai({QStringLiteral("--keuze=regen"), QStringLiteral("--seconden=2"),
                QStringLiteral("--meet")});
    EXPECT_EQ(saver.uitgang(), 0) << saver.fouten().toStdString();
    EXPECT_EQ(saver.fouten(), QByteArray());
    const QJsonObject meting = QJsonDocument::fromJson(saver.uit()).object();
    EXPECT_GT(meting[QStringLiteral("beelden")].toInt(), 3);

    InSessie eigenaar(brixtel::bureauPad(), bus);
    eigenaar.opWayland(kwin.address()).start({QStringLiteral("--toon-regen")});
    ASSERT_TRUE(antwoordt());
    EXPECT_TRUE(until([this] { return eigenschap("RegenStand").contains("\"aan\""); }));
    EXPECT_EQ(vraag("--stop").uitgang, 0);
    EXPECT_TRUE(eigenaar.wacht());
}

}  // namespace
