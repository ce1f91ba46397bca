// SPDX-License-Identifier: MIT
// The saver on Wayland: on a compositor of the test's own, and on a real one.
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonValue>
#include <csignal>

#include "tests/hosts/saver/Programma.h"
#include "tests/support/wayland/Compositor.h"
#include "tests/support/wayland/Sway.h"
#include "tests/support/wayland/Weston.h"

namespace {

using brixtel::aandeelGroen;
using brixtel::Programma;
using wltest::Compositor;
using wltest::Frames;

wltest::Options tweeSchermen() {
    wltest::Options opties;
    opties.outputs = {{.name = "A"}, {.name = "B", .mode = {800, 600}, .at = {640, 0}}};
    opties.frames = Frames::Always;
    return opties;
}

// The saver on the compositor of a test.
class Saver : public Programma {
  public:
    explicit Saver(const Compositor& compositor) {
        zet(QStringLiteral("WAYLAND_DISPLAY"), compositor.address());
        zet(QStringLiteral("XDG_RUNTIME_DIR"), map());
    }
};

bool toont(Compositor& compositor, std::size_t vensters) {
    return until([&] { return compositor.shown().size() == vensters; });
}

const QStringList kRegen{QStringLiteral("--keuze=regen")};

TEST(SaverOpWayland, VultElkSchermMetEenEigenBovenlaag) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2)) << saver.fouten().toStdString();
    const auto vensters = compositor.shown();
    EXPECT_EQ(vensters[0].output, "A");
    EXPECT_EQ(vensters[0].logical, QSize(640, 480));
    EXPECT_EQ(vensters[1].output, "B");
    EXPECT_EQ(vensters[1].logical, QSize(800, 600));
    for (const auto& venster : vensters) {
        EXPECT_EQ(venster.layer, 3U);
        EXPECT_EQ(venster.keyboard, 1U);
    }
    EXPECT_TRUE(until([&] { return aandeelGroen(compositor.shown()[1].picture) > 0.005; }));
}

TEST(SaverOpWayland, EenToetsOfEenKlikIsHetEinde) {
    for (const bool klik : {false, true}) {
        Compositor compositor(tweeSchermen());
        Saver saver(compositor);
        saver.start(kRegen);
        ASSERT_TRUE(toont(compositor, 2));
        if (klik)
            compositor.click({700, 100});
        else
            compositor.key(KEY_SPACE, true);
        EXPECT_TRUE(saver.wacht());
        EXPECT_EQ(saver.uitgang(), 0);
        EXPECT_EQ(saver.fouten(), QByteArray());
        EXPECT_TRUE(until([&] { return compositor.clients() == 0; }));
    }
}

TEST(SaverOpWayland, EenEchteBewegingIsHetEindeEenKleineNiet) {
    Compositor compositor(tweeSchermen());
    compositor.pointerTo({100, 100});
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2));
    const auto beelden = [&] { return compositor.count("wl_surface", "commit"); };
    compositor.pointerTo({130, 100});
    const int eerst = beelden();
    ASSERT_TRUE(until([&] { return beelden() > eerst + 6 || !saver.loopt(); }));
    EXPECT_TRUE(saver.loopt());
    EXPECT_TRUE(compositor.cursorHidden());
    compositor.pointerTo({160, 100});
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
}

TEST(SaverOpWayland, SchermenKomenEnGaan) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2));
    compositor.removeOutput("B");
    ASSERT_TRUE(toont(compositor, 1));
    compositor.addOutput({.name = "C", .mode = {320, 240}, .at = {640, 0}});
    ASSERT_TRUE(toont(compositor, 2));
    EXPECT_EQ(compositor.shown()[1].output, "C");
    EXPECT_TRUE(saver.loopt());
}

TEST(SaverOpWayland, OnzichtbaarWordtErNietsGetekend) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2));
    compositor.setFrames(Frames::ByHand);
    // A picture that was under way comes; the next one waits for an answer.
    int vorige = -1;
    ASSERT_TRUE(until([&] {
        const int nu = compositor.count("wl_surface", "commit");
        const auto alle = compositor.shown();
        const bool wachten = std::all_of(alle.begin(), alle.end(),
                                         [](const auto& s) { return s.pendingFrames > 0; });
        return std::exchange(vorige, nu) == nu && wachten;
    }));
    const int eerst = compositor.count("wl_surface", "commit");
    // A key on neither surface: the program has had its turn when it ends.
    compositor.key(KEY_SPACE, true);
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(compositor.count("wl_surface", "commit"), eerst);
}

TEST(SaverOpWayland, ZonderBovenlagenIsHetEenVensterOverElkScherm) {
    wltest::Options opties = tweeSchermen();
    opties.globals.layerShell = false;
    Compositor compositor(opties);
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2)) << saver.fouten().toStdString();
    for (const auto& venster : compositor.shown()) {
        EXPECT_EQ(venster.role, wltest::Role::Toplevel);
        EXPECT_TRUE(venster.fullScreen);
    }
    EXPECT_EQ(compositor.shown()[1].output, "B");
}

TEST(SaverOpWayland, EenVensterHeeftDeGevraagdeMaat) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start({QStringLiteral("--keuze=regen"), QStringLiteral("--venster=300x200")});
    ASSERT_TRUE(toont(compositor, 1)) << saver.fouten().toStdString();
    EXPECT_EQ(compositor.shown()[0].logical, QSize(300, 200));
    compositor.close(compositor.shown()[0].id);
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
}

TEST(SaverOpWayland, EenCompositorDieVerdwijntIsEenStilEinde) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2));
    compositor.die();
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
    EXPECT_EQ(saver.fouten(), QByteArray());
}

TEST(SaverOpWayland, EenProtocolfoutIsEenRegelEnUitgangEen) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.start(kRegen);
    ASSERT_TRUE(toont(compositor, 2));
    compositor.postError();
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 1);
    const QByteArray fouten = saver.fouten();
    EXPECT_EQ(fouten.count('\n'), 1) << fouten.toStdString();
    EXPECT_TRUE(fouten.startsWith("brixtel-saver: het venstersysteem verbrak de verbinding"));
}

// The second name needs a folder, which the environment does not give.
TEST(SaverOpWayland, ZonderCompositorIsHetEenRegelEnUitgangEen) {
    for (const char* naam : {"/bestaat/niet", "bestaat-niet"}) {
        Programma saver;
        saver.zet(QStringLiteral("WAYLAND_DISPLAY"), QLatin1String(naam));
        saver.draai({QStringLiteral("--venstersysteem=wayland"), QStringLiteral("--keuze=regen")});
        EXPECT_EQ(saver.uitgang(), 1);
        EXPECT_EQ(saver.fouten().toStdString(),
                  "brixtel-saver: er is geen scherm om op te tekenen; met --plaatje kan het "
                  "zonder\n");
    }
}

TEST(SaverOpWayland, WieX11VraagtKrijgtGeenWayland) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.draai({QStringLiteral("--venstersysteem=x11"), QStringLiteral("--keuze=regen")});
    EXPECT_EQ(saver.uitgang(), 1);
    EXPECT_EQ(compositor.count("wl_display", "get_registry"), 0);
}

TEST(SaverOpWayland, EenOnbekendVenstersysteemIsVerkeerdGebruik) {
    Programma saver;
    saver.draai({QStringLiteral("--venstersysteem=papier")});
    EXPECT_EQ(saver.uitgang(), 2);
    EXPECT_TRUE(saver.fouten().contains("--venstersysteem kent wayland, x11 en auto"));
}

TEST(SaverOpWayland, DeMetingIsEenRegelMetBeelden) {
    Compositor compositor(tweeSchermen());
    Saver saver(compositor);
    saver.draai({QStringLiteral("--keuze=regen"), QStringLiteral("--seconden=1"),
                 QStringLiteral("--meet")});
    EXPECT_EQ(saver.uitgang(), 0);
    const QJsonObject meting = QJsonDocument::fromJson(saver.uit()).object();
    EXPECT_GT(meting[QStringLiteral("beelden")].toInt(), 3);
    EXPECT_EQ(meting[QStringLiteral("tekenaar")].toString(), QStringLiteral("cpu"));
}

TEST(SaverOpWeston, DraaitSchermvullendZonderBovenlagen) {
    const wltest::Weston weston;
    if (!weston.isRunning()) GTEST_SKIP() << weston.reason();
    Programma saver;
    saver.zet(QStringLiteral("WAYLAND_DISPLAY"), weston.address());
    saver.zet(QStringLiteral("XDG_RUNTIME_DIR"), saver.map());
    saver.draai({QStringLiteral("--keuze=regen"), QStringLiteral("--seconden=2"),
                 QStringLiteral("--meet")});
    EXPECT_EQ(saver.uitgang(), 0) << saver.fouten().toStdString();
    const QJsonObject meting = QJsonDocument::fromJson(saver.uit()).object();
    EXPECT_GT(meting[QStringLiteral("beelden")].toInt(), 3);
}

const QStringList kKubusMetGl{QStringLiteral("--keuze=kubus"), QStringLiteral("--tekenaar=gl")};

// The library that speaks with the compositor writes down every request. The pictures come when
// they can: on a busy machine a driver takes seconds to start.
void toontBeelden(Programma& saver) {
    constexpr int kBeelden = 5;
    saver.zet(QStringLiteral("WAYLAND_DEBUG"), QStringLiteral("1"));
    saver.start(kKubusMetGl);
    QByteArray verzoeken;
    EXPECT_TRUE(until([&] {
        verzoeken += saver.fouten();
        return verzoeken.count(".attach(wl_buffer") >= kBeelden || !saver.loopt();
    }));
    EXPECT_TRUE(saver.loopt());
    ::kill(static_cast<pid_t>(saver.nummer()), SIGTERM);
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), SIGTERM);
}

// OpenGL in software, on real compositors: the driver commits by itself.
void tekentMetOpenGl(const QString& adres) {
    Programma saver;
    saver.zet(QStringLiteral("WAYLAND_DISPLAY"), adres);
    saver.zet(QStringLiteral("XDG_RUNTIME_DIR"), saver.map());
    saver.draai(kKubusMetGl +
                QStringList{QStringLiteral("--seconden=2"), QStringLiteral("--meet")});
    EXPECT_EQ(saver.uitgang(), 0) << saver.fouten().toStdString();
    EXPECT_EQ(saver.fouten(), QByteArray());
    const QJsonObject meting = QJsonDocument::fromJson(saver.uit()).object();
    EXPECT_TRUE(meting[QStringLiteral("tekenaar")].toString().contains(QStringLiteral("llvmpipe")));
    toontBeelden(saver);
}

TEST(SaverOpWeston, TekentMetOpenGl) {
    const wltest::Weston weston;
    if (!weston.isRunning()) GTEST_SKIP() << weston.reason();
    tekentMetOpenGl(weston.address());
}

TEST(SaverOpSway, TekentMetOpenGl) {
    wltest::Sway sway(1);
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    tekentMetOpenGl(sway.address());
}

// The ends of a saver whose driver hangs in the swap of each of its windows.
enum class Einde { Toets, Term, Dood };

class InEenZwaaiZonderEinde : public testing::TestWithParam<Einde> {
  protected:
    // Five windows that wait one after the other would end later than the test allows.
    static constexpr int kSchermen = 5;
    static wltest::Options schuldig() {
        wltest::Options opties;
        opties.outputs.clear();
        for (int i = 0; i < kSchermen; ++i)
            opties.outputs.push_back({.name = std::string(1, static_cast<char>('A' + i)),
                                      .mode = {64, 48},
                                      .at = {i * 64, 0}});
        opties.frames = Frames::Always;
        opties.answersAllCallbacks = false;
        return opties;
    }
};

TEST_P(InEenZwaaiZonderEinde, EindigtDeSaverBinnenDeGrens) {
    Compositor compositor(schuldig());
    Saver saver(compositor);
    // Mesa then waits within the swap for an answer of its own, and says nothing of it.
    saver.zet(QStringLiteral("vblank_mode"), QStringLiteral("3"));
    saver.zet(QStringLiteral("MESA_DEBUG"), QStringLiteral("silent"));
    saver.start({QStringLiteral("--keuze=regen"), QStringLiteral("--tekenaar=gl")});
    ASSERT_TRUE(toont(compositor, kSchermen)) << saver.fouten().toStdString();
    // For each window's first picture two, and for the one in the driver's hands one.
    ASSERT_TRUE(until([&] { return compositor.count("wl_surface", "frame") == 3 * kSchermen; }));
    EXPECT_EQ(compositor.pictures(), kSchermen);
    switch (GetParam()) {
        case Einde::Toets:
            compositor.key(KEY_SPACE, true);
            break;
        case Einde::Term:
            ::kill(static_cast<pid_t>(saver.nummer()), SIGTERM);
            break;
        case Einde::Dood:
            compositor.die();
    }
    EXPECT_TRUE(saver.wacht());
    const bool doorSignaal = GetParam() == Einde::Term;
    EXPECT_EQ(saver.doorSignaal(), doorSignaal);
    EXPECT_EQ(saver.uitgang(), doorSignaal ? SIGTERM : 0);
    EXPECT_EQ(saver.fouten(), QByteArray());
    EXPECT_TRUE(until([&] { return compositor.clients() == 0; }));
}

INSTANTIATE_TEST_SUITE_P(SaverOpWayland, InEenZwaaiZonderEinde,
                         testing::Values(Einde::Toets, Einde::Term, Einde::Dood),
                         [](const auto& einde) {
                             return einde.param == Einde::Toets  ? "Toets"
                                    : einde.param == Einde::Term ? "Term"
                                                                 : "Dood";
                         });

// This compositor offers reports of what was presented, and sends none without a screen.
TEST(SaverOpSway, DeMetingTeltBeeldenOokZonderMelding) {
    wltest::Sway sway(1);
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    Programma saver;
    saver.zet(QStringLiteral("WAYLAND_DISPLAY"), sway.address());
    saver.zet(QStringLiteral("XDG_RUNTIME_DIR"), saver.map());
    saver.draai({QStringLiteral("--keuze=regen"), QStringLiteral("--seconden=2"),
                 QStringLiteral("--meet")});
    EXPECT_EQ(saver.uitgang(), 0) << saver.fouten().toStdString();
    const QJsonObject meting = QJsonDocument::fromJson(saver.uit()).object();
    EXPECT_GT(meting[QStringLiteral("beelden")].toInt(), 3);
    EXPECT_GT(meting[QStringLiteral("eerste_beeld_ms")].toDouble(), 0.0);
}

TEST(SaverOpSway, RegentOpBeideSchermenEnEindigtDoorEenToets) {
    wltest::Sway sway(2);
    if (!sway.isRunning()) GTEST_SKIP() << sway.reason();
    Programma saver;
    saver.zet(QStringLiteral("WAYLAND_DISPLAY"), sway.address());
    saver.zet(QStringLiteral("XDG_RUNTIME_DIR"), saver.map());
    saver.start(kRegen);
    for (const char* scherm : {"HEADLESS-1", "HEADLESS-2"})
        ASSERT_TRUE(until([&] {
            const QImage beeld = sway.picture(QLatin1String(scherm));
            // Nothing is left of the background.
            for (int y = 0; y < beeld.height(); ++y)
                for (int x = 0; x < beeld.width(); ++x)
                    if (beeld.pixel(x, y) == wltest::Sway::kBackground) return false;
            return aandeelGroen(beeld) > 0.005;
        })) << scherm;
    if (!sway.type(QStringLiteral("q"))) GTEST_SKIP() << "wtype is not installed";
    EXPECT_TRUE(saver.wacht());
    EXPECT_EQ(saver.uitgang(), 0);
    EXPECT_TRUE(until([&] {
        const QImage beeld = sway.picture();
        return !beeld.isNull() && beeld.pixel(100, 100) == wltest::Sway::kBackground;
    }));
}

}  // namespace
