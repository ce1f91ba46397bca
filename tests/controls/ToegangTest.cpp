// SPDX-License-Identifier: MIT
// The kit as a client of assistive technology finds it, over a real accessibility
// bus. Server, buses and program are the test's own.
#include <atspi/atspi.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <functional>
#include <memory>
#include <vector>

#include "tests/support/DBusDaemon.h"
#include "tests/support/Paden.h"
#include "tests/support/TijdelijkeMap.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace {

struct LaatLos {
    void operator()(gpointer ding) const { g_object_unref(ding); }
};
using Toegankelijk = std::unique_ptr<AtspiAccessible, LaatLos>;

std::string tekst(gchar* gegeven) {
    const std::unique_ptr<gchar, decltype(&g_free)> eigen(gegeven, &g_free);
    return eigen ? eigen.get() : "";
}

std::string naam(AtspiAccessible* van) {
    return tekst(atspi_accessible_get_name(van, nullptr));
}
std::string omschrijving(AtspiAccessible* van) {
    return tekst(atspi_accessible_get_description(van, nullptr));
}

bool heeft(AtspiAccessible* van, AtspiStateType staat) {
    AtspiStateSet* staten = atspi_accessible_get_state_set(van);
    const bool zo = atspi_state_set_contains(staten, staat);
    g_object_unref(staten);
    return zo;
}

// Everything under it, itself included, in order.
void verzamel(Toegankelijk van, std::vector<Toegankelijk>& in) {
    if (!van) return;
    const int aantal = atspi_accessible_get_child_count(van.get(), nullptr);
    AtspiAccessible* const ouder = van.get();
    in.push_back(std::move(van));
    for (int i = 0; i < aantal; ++i)
        verzamel(Toegankelijk(atspi_accessible_get_child_at_index(ouder, i, nullptr)), in);
}

// Does what the action of that name does; whether there was one.
bool doe(AtspiAccessible* met, const std::string& actie) {
    const std::unique_ptr<AtspiAction, LaatLos> acties(atspi_accessible_get_action_iface(met));
    if (!acties) return false;
    for (int i = 0; i < atspi_action_get_n_actions(acties.get(), nullptr); ++i)
        if (tekst(atspi_action_get_action_name(acties.get(), i, nullptr)) == actie)
            return atspi_action_do_action(acties.get(), i, nullptr);
    return false;
}

class ToegangTest : public testing::Test {
  protected:
    // The library begins once for a process, and stays with the bus it found.
    static void SetUpTestSuite() {
        omgeving = new Omgeving;
        qputenv("DISPLAY", omgeving->scherm.display().toLocal8Bit());
        qputenv("XDG_RUNTIME_DIR", (omgeving->map / "").c_str());
        qputenv("HOME", (omgeving->map / "").c_str());
        qunsetenv("AT_SPI_BUS_ADDRESS");
        omgeving->bus = std::make_unique<DBusDaemon>();
        qputenv("DBUS_SESSION_BUS_ADDRESS", omgeving->bus->address().toLocal8Bit());
        omgeving->begonnen = atspi_init() == 0;
    }
    static void TearDownTestSuite() {
        atspi_exit();
        delete omgeving;
    }
    void SetUp() override {
        ASSERT_TRUE(omgeving->scherm.isRunning());
        ASSERT_TRUE(omgeving->begonnen);
        startProgramma();
        ASSERT_TRUE(until([this] { return vind(ATSPI_ROLE_PUSH_BUTTON, "Toon nu") != nullptr; }));
    }
    void TearDown() override {
        programma.kill();
        programma.waitForFinished();
        EXPECT_EQ(programma.readAllStandardError().toStdString(), "");
    }

    void startProgramma() {
        QProcessEnvironment zijn = QProcessEnvironment::systemEnvironment();
        zijn.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("xcb"));
        zijn.insert(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        zijn.insert(QStringLiteral("QT_LINUX_ACCESSIBILITY_ALWAYS_ON"), QStringLiteral("1"));
        zijn.remove(QStringLiteral("QT_SCALE_FACTOR"));
        programma.setProcessEnvironment(zijn);
        programma.start(QStringLiteral(BRIXTEL_BUILD_DIR "/tests/bediening_proef"),
                        {QStringLiteral(BRIXTEL_PROEF)});
        ASSERT_TRUE(programma.waitForStarted());
    }

    // Nothing is remembered between questions, as the program may have changed.
    std::vector<Toegankelijk> alles() {
        std::vector<Toegankelijk> gevonden;
        Toegankelijk bureaublad(atspi_get_desktop(0));
        if (!bureaublad) return gevonden;
        atspi_accessible_set_cache_mask(bureaublad.get(), ATSPI_CACHE_NONE);
        verzamel(std::move(bureaublad), gevonden);
        return gevonden;
    }
    Toegankelijk vind(AtspiRole rol, const std::string& met) {
        for (Toegankelijk& een : alles())
            if (naam(een.get()) == met && atspi_accessible_get_role(een.get(), nullptr) == rol)
                return std::move(een);
        return nullptr;
    }
    // Whether the one found comes to be so.
    bool wordt(AtspiRole rol, const std::string& met,
               const std::function<bool(AtspiAccessible*)>& zo) {
        return until([&] {
            const Toegankelijk een = vind(rol, met);
            return een && zo(een.get());
        });
    }

    struct Omgeving {
        steun::TijdelijkeMap map;
        Xvfb scherm;
        std::unique_ptr<DBusDaemon> bus;
        bool begonnen = false;
    };
    static inline Omgeving* omgeving = nullptr;
    QProcess programma;
};

TEST_F(ToegangTest, FindsEveryControlByItsName) {
    const std::pair<AtspiRole, const char*> bediening[] = {
        {ATSPI_ROLE_PUSH_BUTTON, "Toon nu"},
        {ATSPI_ROLE_LABEL, "0 keer gedrukt"},
        {ATSPI_ROLE_CHECK_BOX, "Regen"},
        {ATSPI_ROLE_CHECK_BOX, "Ook bij stilte"},
        {ATSPI_ROLE_RADIO_BUTTON, "Bol"},
        {ATSPI_ROLE_RADIO_BUTTON, "Kubus"},
        {ATSPI_ROLE_SLIDER, "Dichtheid"},
        {ATSPI_ROLE_PANEL, "Muziek"},
        {ATSPI_ROLE_PUSH_BUTTON, "Toon de opties van Muziek"},
        {ATSPI_ROLE_CHECK_BOX, "Muziek"},
        {ATSPI_ROLE_LABEL, "stil"},
        {ATSPI_ROLE_ALERT, "Er is geen geluid."},
        {ATSPI_ROLE_PUSH_BUTTON, "Zoek"}};
    for (const auto& [rol, met] : bediening)
        EXPECT_TRUE(vind(rol, met)) << met;
}

TEST_F(ToegangTest, NothingIsThereTwice) {
    std::vector<std::string> namen;
    for (const Toegankelijk& een : alles())
        if (atspi_accessible_get_role(een.get(), nullptr) == ATSPI_ROLE_LABEL)
            namen.push_back(naam(een.get()));
    EXPECT_EQ(namen, (std::vector<std::string>{"0 keer gedrukt", "stil"}))
        << "the texts of the controls are their names already";
}

TEST_F(ToegangTest, ReadsAanAndUit) {
    const Toegankelijk regen = vind(ATSPI_ROLE_CHECK_BOX, "Regen");
    const Toegankelijk stilte = vind(ATSPI_ROLE_CHECK_BOX, "Ook bij stilte");
    ASSERT_TRUE(regen && stilte);
    EXPECT_EQ(omschrijving(regen.get()), "uit");
    EXPECT_FALSE(heeft(regen.get(), ATSPI_STATE_CHECKED));
    EXPECT_TRUE(heeft(regen.get(), ATSPI_STATE_FOCUSABLE));
    EXPECT_EQ(omschrijving(stilte.get()), "aan");
    EXPECT_TRUE(heeft(stilte.get(), ATSPI_STATE_CHECKED));
}

TEST_F(ToegangTest, FlipsATogglePressingOrToggling) {
    for (const char* actie : {"Toggle", "Press"}) {
        const bool was = heeft(vind(ATSPI_ROLE_CHECK_BOX, "Regen").get(), ATSPI_STATE_CHECKED);
        ASSERT_TRUE(doe(vind(ATSPI_ROLE_CHECK_BOX, "Regen").get(), actie)) << actie;
        EXPECT_TRUE(wordt(ATSPI_ROLE_CHECK_BOX, "Regen", [was](AtspiAccessible* nu) {
            return heeft(nu, ATSPI_STATE_CHECKED) != was &&
                   omschrijving(nu) == (was ? "uit" : "aan");
        })) << actie;
    }
}

TEST_F(ToegangTest, PressesAButton) {
    ASSERT_TRUE(doe(vind(ATSPI_ROLE_PUSH_BUTTON, "Toon nu").get(), "Press"));
    EXPECT_TRUE(until([this] { return vind(ATSPI_ROLE_LABEL, "1 keer gedrukt") != nullptr; }));
}

TEST_F(ToegangTest, ReadsAndMovesASlider) {
    const Toegankelijk schuif = vind(ATSPI_ROLE_SLIDER, "Dichtheid");
    ASSERT_TRUE(schuif);
    const std::unique_ptr<AtspiValue, LaatLos> waarde(
        atspi_accessible_get_value_iface(schuif.get()));
    ASSERT_TRUE(waarde);
    EXPECT_DOUBLE_EQ(atspi_value_get_current_value(waarde.get(), nullptr), 0.5);
    EXPECT_DOUBLE_EQ(atspi_value_get_minimum_value(waarde.get(), nullptr), 0.0);
    EXPECT_DOUBLE_EQ(atspi_value_get_maximum_value(waarde.get(), nullptr), 2.0);
    EXPECT_DOUBLE_EQ(atspi_value_get_minimum_increment(waarde.get(), nullptr), 0.02);
    EXPECT_EQ(omschrijving(schuif.get()), "25%");
    const auto toont = [](const char* zoveel) {
        return [zoveel](AtspiAccessible* nu) { return omschrijving(nu) == zoveel; };
    };
    ASSERT_TRUE(atspi_value_set_current_value(waarde.get(), 1.5, nullptr));
    EXPECT_TRUE(wordt(ATSPI_ROLE_SLIDER, "Dichtheid", toont("75%")));
    ASSERT_TRUE(atspi_value_set_current_value(waarde.get(), 99.0, nullptr));
    EXPECT_TRUE(wordt(ATSPI_ROLE_SLIDER, "Dichtheid", toont("100%")));
}

TEST_F(ToegangTest, StepsASliderFiveStepsAtATime) {
    const auto toont = [](const char* zoveel) {
        return [zoveel](AtspiAccessible* nu) { return omschrijving(nu) == zoveel; };
    };
    ASSERT_TRUE(doe(vind(ATSPI_ROLE_SLIDER, "Dichtheid").get(), "Increase"));
    EXPECT_TRUE(wordt(ATSPI_ROLE_SLIDER, "Dichtheid", toont("30%")));
    ASSERT_TRUE(doe(vind(ATSPI_ROLE_SLIDER, "Dichtheid").get(), "Decrease"));
    EXPECT_TRUE(wordt(ATSPI_ROLE_SLIDER, "Dichtheid", toont("25%")));
}

TEST_F(ToegangTest, EveryControlThatCanHaveTheKeyboardSaysSo) {
    const std::pair<AtspiRole, const char*> bediening[] = {
        {ATSPI_ROLE_PUSH_BUTTON, "Toon nu"}, {ATSPI_ROLE_CHECK_BOX, "Ook bij stilte"},
        {ATSPI_ROLE_RADIO_BUTTON, "Bol"},    {ATSPI_ROLE_RADIO_BUTTON, "Kubus"},
        {ATSPI_ROLE_SLIDER, "Dichtheid"},    {ATSPI_ROLE_PUSH_BUTTON, "Toon de opties van Muziek"},
        {ATSPI_ROLE_CHECK_BOX, "Muziek"},    {ATSPI_ROLE_PUSH_BUTTON, "Zoek"}};
    for (const auto& [rol, met] : bediening) {
        const Toegankelijk een = vind(rol, met);
        ASSERT_TRUE(een) << met;
        EXPECT_TRUE(heeft(een.get(), ATSPI_STATE_FOCUSABLE)) << met;
    }
}

TEST_F(ToegangTest, ChoosesAnOption) {
    EXPECT_TRUE(heeft(vind(ATSPI_ROLE_RADIO_BUTTON, "Bol").get(), ATSPI_STATE_CHECKED));
    ASSERT_TRUE(doe(vind(ATSPI_ROLE_RADIO_BUTTON, "Kubus").get(), "Press"));
    EXPECT_TRUE(wordt(ATSPI_ROLE_RADIO_BUTTON, "Kubus",
                      [](AtspiAccessible* nu) { return heeft(nu, ATSPI_STATE_CHECKED); }));
    EXPECT_FALSE(heeft(vind(ATSPI_ROLE_RADIO_BUTTON, "Bol").get(), ATSPI_STATE_CHECKED));
}

TEST_F(ToegangTest, OpensARow) {
    EXPECT_FALSE(vind(ATSPI_ROLE_SLIDER, "Gevoelig"));
    ASSERT_TRUE(doe(vind(ATSPI_ROLE_PUSH_BUTTON, "Toon de opties van Muziek").get(), "Press"));
    EXPECT_TRUE(until([this] { return vind(ATSPI_ROLE_SLIDER, "Gevoelig") != nullptr; }));
    EXPECT_TRUE(vind(ATSPI_ROLE_PUSH_BUTTON, "Verberg de opties van Muziek"));
}

}  // namespace
