// SPDX-License-Identifier: MIT
#include "platform/session/PowerSupply.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/TijdelijkeMap.h"
#include "tests/support/Until.h"

using platform::isOnBattery;

namespace {

// A folder as the kernel lays it out.
struct Supplies : testing::Test {
    steun::TijdelijkeMap map;

    void supply(const std::string& name, const std::string& type,
                const std::vector<std::pair<std::string, std::string>>& more) {
        std::filesystem::create_directories(map / name);
        (void)map.bestand(name + "/type", type + "\n");
        for (const auto& [file, text] : more)
            (void)map.bestand(name + "/" + file, text + "\n");
    }
    [[nodiscard]] bool onBattery() const { return isOnBattery(map / ""); }
};

TEST_F(Supplies, ADesktopMachineHasNone) {
    EXPECT_FALSE(onBattery());
    EXPECT_FALSE(isOnBattery(map / "not there"));
    supply("AC", "Mains", {{"online", "1"}});
    EXPECT_FALSE(onBattery());
}

TEST_F(Supplies, ALaptopUnplugged) {
    supply("AC", "Mains", {{"online", "0"}});
    supply("BAT0", "Battery", {{"status", "Discharging"}});
    EXPECT_TRUE(onBattery());
}

TEST_F(Supplies, ALaptopPluggedIn) {
    supply("BAT0", "Battery", {{"status", "Charging"}});
    supply("AC", "Mains", {{"online", "1"}});
    EXPECT_FALSE(onBattery());
    supply("BAT0", "Battery", {{"status", "Full"}});
    EXPECT_FALSE(onBattery());
    // A feed too weak for what it uses.
    supply("BAT0", "Battery", {{"status", "Discharging"}});
    EXPECT_FALSE(onBattery());
}

TEST_F(Supplies, OneFedOverItsUsbPlug) {
    supply("BAT0", "Battery", {{"status", "Discharging"}});
    supply("ucsi-source-psy-1", "USB", {{"online", "0"}});
    EXPECT_TRUE(onBattery());
    for (const char* online : {"1", "2"}) {
        supply("ucsi-source-psy-1", "USB", {{"online", online}});
        EXPECT_FALSE(onBattery()) << online;
    }
}

TEST_F(Supplies, AMachineOnItsUninterruptibleSupply) {
    supply("ups", "UPS", {{"status", "Full"}});
    EXPECT_FALSE(onBattery());
    supply("ups", "UPS", {{"status", "Discharging"}});
    EXPECT_TRUE(onBattery());
}

TEST_F(Supplies, AMousesChargerFeedsNotTheMachine) {
    supply("BAT0", "Battery", {{"status", "Discharging"}});
    supply("charger", "Wireless", {{"online", "1"}, {"scope", "Device"}});
    EXPECT_TRUE(onBattery());
}

TEST_F(Supplies, OddWordsAreNoFeedAndNoBattery) {
    for (const char* odd : {"", "-1", "yes", "\xff\xfe", "1x"}) {
        supply("AC", "Mains", {{"online", odd}});
        supply("BAT0", "Battery", {{"status", "Discharging"}});
        EXPECT_TRUE(onBattery()) << odd;
        supply("BAT0", "Battery", {{"status", odd}});
        EXPECT_FALSE(onBattery()) << odd;
    }
    supply("BAT0", std::string(100'000, 'B'), {{"status", "Discharging"}});
    EXPECT_FALSE(onBattery());
}

TEST_F(Supplies, LinksThatLeadNowhereAndFoldersForFilesAreNone) {
    std::filesystem::create_symlink("BAT0", map / "BAT0");
    std::filesystem::create_symlink("gone", map / "AC");
    std::filesystem::create_directories(map / "BAT1/type");
    EXPECT_FALSE(onBattery());
    supply("BAT2", "Battery", {{"status", "Discharging"}});
    EXPECT_TRUE(onBattery());
}

TEST_F(Supplies, OneOfTwoBatteriesIsEmptied) {
    supply("BAT0", "Battery", {{"status", "Unknown"}});
    supply("BAT1", "Battery", {{"status", "Discharging"}});
    EXPECT_TRUE(onBattery());
}

TEST_F(Supplies, AMousesBatteryIsNotTheMachines) {
    supply("hidpp_battery_0", "Battery", {{"status", "Discharging"}, {"scope", "Device"}});
    EXPECT_FALSE(onBattery());
}

TEST_F(Supplies, ADamagedFolderIsNoBattery) {
    std::filesystem::create_directories(map / "BAT0");
    (void)map.bestand("loose", "Battery\n");
    EXPECT_FALSE(onBattery());
}

TEST_F(Supplies, TheWatchTellsOfChangesOnly) {
    supply("BAT0", "Battery", {{"status", "Discharging"}});
    platform::ManualClock clock;
    std::vector<bool> told;
    {
        const platform::PowerWatch watch(
            clock, [&](bool battery) { told.push_back(battery); }, map / "");
        ASSERT_TRUE(until([&] { return told.size() == 1; }));
        EXPECT_TRUE(told.back());
        supply("BAT0", "Battery", {{"status", "Charging"}});
        ASSERT_TRUE(until([&] {
            clock.advance(30.0);
            return told.size() == 2;
        }));
        EXPECT_FALSE(told.back());
        for (int i = 0; i < 10; ++i)
            clock.advance(30.0);
    }
    EXPECT_EQ(clock.timerCount(), 0U);
    EXPECT_EQ(told.size(), 2U);
}

}  // namespace
