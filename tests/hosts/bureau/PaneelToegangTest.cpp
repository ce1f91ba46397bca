// SPDX-License-Identifier: MIT
// The panel as a client of assistive technology finds it, over a real
// accessibility bus. Server, buses and program are the test's own.
#include <atspi/atspi.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <functional>
#include <memory>

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

// The first below `van`, itself included, of that role and name.
Toegankelijk vind(Toegankelijk van, AtspiRole rol, const std::string& naam) {
    if (!van) return nullptr;
    if (atspi_accessible_get_role(van.get(), nullptr) == rol &&
        tekst(atspi_accessible_get_name(van.get(), nullptr)) == naam)
        return van;
    const int aantal = atspi_accessible_get_child_count(van.get(), nullptr);
    for (int i = 0; i < aantal; ++i) {
        Toegankelijk kind(atspi_accessible_get_child_at_index(van.get(), i, nullptr));
        if (auto gevonden = vind(std::move(kind), rol, naam)) return gevonden;
    }
    return nullptr;
}

// Nothing is remembered between questions, as the program may have changed.
Toegankelijk vind(AtspiRole rol, const std::string& naam) {
    Toegankelijk bureaublad(atspi_get_desktop(0));
    if (bureaublad) atspi_accessible_set_cache_mask(bureaublad.get(), ATSPI_CACHE_NONE);
    return vind(std::move(bureaublad), rol, naam);
}

bool druk(AtspiAccessible* met) {
    const std::unique_ptr<AtspiAction, LaatLos> acties(atspi_accessible_get_action_iface(met));
    if (!acties) return false;
    for (int i = 0; i < atspi_action_get_n_actions(acties.get(), nullptr); ++i)
        if (tekst(atspi_action_get_action_name(acties.get(), i, nullptr)) == "Press")
            return atspi_action_do_action(acties.get(), i, nullptr);
    return false;
}

TEST(PaneelToegang, AScreenReaderFindsReadsAndWorksThePanelOfTheRunningOwner) {
    const steun::TijdelijkeMap map;
    const Xvfb scherm;
    ASSERT_TRUE(scherm.isRunning());
    qputenv("DISPLAY", scherm.display().toLocal8Bit());
    qputenv("XDG_RUNTIME_DIR", (map / "").c_str());
    qputenv("XDG_CONFIG_HOME", (map / "").c_str());
    qputenv("HOME", (map / "").c_str());
    qputenv("LIBGL_ALWAYS_SOFTWARE", "1");
    qputenv("PULSE_SERVER", "unix:/nonexistent");
    qunsetenv("AT_SPI_BUS_ADDRESS");
    const DBusDaemon bus;
    qputenv("DBUS_SESSION_BUS_ADDRESS", bus.address().toLocal8Bit());
    ASSERT_EQ(atspi_init(), 0);
    // Wakes the accessibility bus, as a screen reader does.
    ASSERT_TRUE(Toegankelijk(atspi_get_desktop(0)));
    qputenv("QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1");

    QProcess eigenaar;
    eigenaar.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau"), QStringList());
    ASSERT_TRUE(until([] { return vind(ATSPI_ROLE_PUSH_BUTTON, "Toon nu") != nullptr; }, 30'000));
    for (const char* naam : {"Dichtheid", "Snelheid"})
        EXPECT_TRUE(vind(ATSPI_ROLE_SLIDER, naam)) << naam;
    for (const auto& [rol, naam, zoveel] : {std::tuple{ATSPI_ROLE_PROGRESS_BAR, "Niveau", "0%"},
                                            std::tuple{ATSPI_ROLE_IMAGE, "Maat", "uit"}}) {
        const Toegankelijk meter = vind(rol, naam);
        ASSERT_TRUE(meter) << naam;
        const std::unique_ptr<AtspiValue, LaatLos> waarde(
            atspi_accessible_get_value_iface(meter.get()));
        ASSERT_TRUE(waarde) << naam;
        EXPECT_EQ(atspi_value_get_current_value(waarde.get(), nullptr), 0.0);
        EXPECT_EQ(atspi_value_get_maximum_value(waarde.get(), nullptr), 1.0);
        EXPECT_EQ(tekst(atspi_accessible_get_description(meter.get(), nullptr)), zoveel);
    }
    const Toegankelijk muziek = vind(ATSPI_ROLE_CHECK_BOX, "Muziek volgen");
    ASSERT_TRUE(muziek);
    EXPECT_EQ(tekst(atspi_accessible_get_description(muziek.get(), nullptr)), "uit");
    ASSERT_TRUE(druk(muziek.get()));
    EXPECT_TRUE(until([] {
        const Toegankelijk nu = vind(ATSPI_ROLE_CHECK_BOX, "Muziek volgen");
        return nu && tekst(atspi_accessible_get_description(nu.get(), nullptr)) == "aan";
    }));
    eigenaar.kill();
    eigenaar.waitForFinished();
    atspi_exit();
}

}  // namespace
