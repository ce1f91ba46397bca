// SPDX-License-Identifier: MIT
#include "desktop/Bovenlaag.h"
#include "tests/support/WindowSystems.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

using brixtel::Bovenlaag;
using platform::ManualClock;
using platform::Window;
using platform::WindowServer;

namespace {

// A desktop that has the functions, but for those that are missing, and writes
// down how they are called.
std::vector<std::string> roepen;
std::set<std::string> missend;
std::vector<std::string> gezocht;
std::uint64_t volgende = 0;  // the space that is made next

std::string getallen(const CGSNumbers* lijst) {
    std::string tekst = "[";
    for (std::size_t i = 0; i < lijst->count; ++i)
        tekst += (i > 0 ? "," : "") + std::to_string(lijst->values[i]);
    return tekst + "]";
}

std::int32_t verbinding() {
    return 7;
}
std::uint64_t maak(std::int32_t c, std::int32_t vlag, const CGSOptions* opties) {
    roepen.push_back("maak " + std::to_string(c) + " " + std::to_string(vlag) +
                     (opties ? " opties" : ""));
    return volgende;
}
void zetNiveau(std::int32_t c, std::uint64_t ruimte, std::int32_t niveau) {
    roepen.push_back("niveau " + std::to_string(c) + " " + std::to_string(ruimte) + " " +
                     std::to_string(niveau));
}
void toon(std::int32_t c, const CGSNumbers* ruimten) {
    roepen.push_back("toon " + std::to_string(c) + " " + getallen(ruimten));
}
void verberg(std::int32_t c, const CGSNumbers* ruimten) {
    roepen.push_back("verberg " + std::to_string(c) + " " + getallen(ruimten));
}
void voeg(std::int32_t c, const CGSNumbers* vensters, const CGSNumbers* ruimten) {
    roepen.push_back("voeg " + std::to_string(c) + " " + getallen(vensters) + " " +
                     getallen(ruimten));
}
void sloop(std::int32_t c, std::uint64_t ruimte) {
    roepen.push_back("sloop " + std::to_string(c) + " " + std::to_string(ruimte));
}

void* zoek(const char* naam) {
    gezocht.emplace_back(naam);
    if (missend.contains(naam)) return nullptr;
    const std::string n = naam;
    if (n == "_CGSDefaultConnection") return reinterpret_cast<void*>(verbinding);
    if (n == "CGSSpaceCreate") return reinterpret_cast<void*>(maak);
    if (n == "CGSSpaceSetAbsoluteLevel") return reinterpret_cast<void*>(zetNiveau);
    if (n == "CGSShowSpaces") return reinterpret_cast<void*>(toon);
    if (n == "CGSHideSpaces") return reinterpret_cast<void*>(verberg);
    if (n == "CGSAddWindowsToSpaces") return reinterpret_cast<void*>(voeg);
    if (n == "CGSSpaceDestroy") return reinterpret_cast<void*>(sloop);
    return nullptr;
}

class BovenlaagTest : public testing::Test {
  protected:
    ManualClock klok;
    WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};
    Window eerste{server, {.frame = {0, 0, 10, 10}, .level = 1000}};
    Window tweede{server, {.frame = {20, 0, 10, 10}, .level = 1000}};

    void SetUp() override {
        roepen.clear();
        missend.clear();
        gezocht.clear();
        volgende = 42;
        Bovenlaag::begin(zoek);
        eerste.show();
        tweede.show();
        ASSERT_GT(eerste.windowNumber(), 0);
        ASSERT_NE(eerste.windowNumber(), tweede.windowNumber());
    }
    void TearDown() override { Bovenlaag::begin(nullptr); }

    static std::string gevoegd(const Window& venster, int ruimte = 42) {
        return "voeg 7 [" + std::to_string(venster.windowNumber()) + "] [" +
               std::to_string(ruimte) + "]";
    }
};

TEST_F(BovenlaagTest, TheFirstWindowMakesAndShowsTheSpaceAtLevelOne) {
    Bovenlaag::zet(eerste);
    const std::vector<std::string> verwacht{"maak 7 1", "niveau 7 42 1", "toon 7 [42]",
                                            gevoegd(eerste)};
    EXPECT_EQ(roepen, verwacht);
    EXPECT_EQ(Bovenlaag::ruimte(), 42U);
}

TEST_F(BovenlaagTest, RuimOpWithoutAPriorZetDoesNothing) {
    Bovenlaag::ruimOp();
    EXPECT_TRUE(roepen.empty());
    EXPECT_TRUE(gezocht.empty());
}

TEST_F(BovenlaagTest, TwoZetCallsCreateExactlyOneSpace) {
    Bovenlaag::zet(eerste);
    roepen.clear();
    volgende = 43;
    Bovenlaag::zet(tweede);
    EXPECT_EQ(roepen, std::vector<std::string>{gevoegd(tweede)});
}

TEST_F(BovenlaagTest, ZetAfterRuimOpCreatesANewSpace) {
    Bovenlaag::zet(eerste);
    roepen.clear();
    Bovenlaag::ruimOp();
    EXPECT_EQ(roepen, (std::vector<std::string>{"verberg 7 [42]", "sloop 7 42"}));
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
    roepen.clear();
    volgende = 43;
    Bovenlaag::zet(eerste);
    EXPECT_EQ(roepen, (std::vector<std::string>{"maak 7 1", "niveau 7 43 1", "toon 7 [43]",
                                                gevoegd(eerste, 43)}));
}

TEST_F(BovenlaagTest, WithTheCreateFunctionMissingZetNeverTouchesTheWindow) {
    missend = {"CGSSpaceCreate"};
    Bovenlaag::zet(eerste);
    Bovenlaag::zet(tweede);
    EXPECT_TRUE(roepen.empty());
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
}

TEST_F(BovenlaagTest, WithAnyOneOfTheFiveMissingZetDoesNothing) {
    for (const char* naam : {"_CGSDefaultConnection", "CGSSpaceCreate", "CGSSpaceSetAbsoluteLevel",
                             "CGSShowSpaces", "CGSAddWindowsToSpaces"}) {
        missend = {naam};
        Bovenlaag::begin(zoek);
        Bovenlaag::zet(eerste);
        EXPECT_TRUE(roepen.empty()) << naam;
        EXPECT_EQ(Bovenlaag::ruimte(), 0U) << naam;
        Bovenlaag::ruimOp();
        EXPECT_TRUE(roepen.empty()) << naam;
    }
}

TEST_F(BovenlaagTest, ZetNeedsNeitherHidingNorDestroying) {
    missend = {"CGSHideSpaces", "CGSSpaceDestroy"};
    Bovenlaag::zet(eerste);
    EXPECT_EQ(roepen.back(), gevoegd(eerste));
}

TEST_F(BovenlaagTest, RuimOpDoesWithoutHiding) {
    missend = {"CGSHideSpaces"};
    Bovenlaag::zet(eerste);
    roepen.clear();
    Bovenlaag::ruimOp();
    EXPECT_EQ(roepen, std::vector<std::string>{"sloop 7 42"});
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
}

TEST_F(BovenlaagTest, RuimOpDoesWithoutDestroying) {
    missend = {"CGSSpaceDestroy"};
    Bovenlaag::zet(eerste);
    roepen.clear();
    Bovenlaag::ruimOp();
    EXPECT_EQ(roepen, std::vector<std::string>{"verberg 7 [42]"});
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
}

TEST_F(BovenlaagTest, AFailedCreateLeavesNoSpaceAndIsTriedAgain) {
    volgende = 0;
    Bovenlaag::zet(eerste);
    EXPECT_EQ(roepen, std::vector<std::string>{"maak 7 1"});
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
    volgende = 5;
    Bovenlaag::zet(eerste);
    EXPECT_EQ(Bovenlaag::ruimte(), 5U);
    EXPECT_EQ(roepen.back(), gevoegd(eerste, 5));
}

TEST_F(BovenlaagTest, AWindowWithoutANumberStaysWhereItIs) {
    Window nooit(server, {.frame = {0, 0, 10, 10}});
    EXPECT_EQ(nooit.windowNumber(), 0);
    Bovenlaag::zet(nooit);
    EXPECT_TRUE(roepen.empty());
    EXPECT_TRUE(gezocht.empty());
}

TEST_F(BovenlaagTest, EachFunctionIsLookedUpOnceAndKeptThroughEveryCycle) {
    for (int keer = 0; keer < 3; ++keer) {
        Bovenlaag::zet(eerste);
        Bovenlaag::ruimOp();
    }
    EXPECT_EQ(gezocht.size(), 7U);
    EXPECT_EQ(std::set<std::string>(gezocht.begin(), gezocht.end()).size(), 7U);
}

TEST_F(BovenlaagTest, TheProcessItselfHasTheFunctions) {
    Bovenlaag::begin(nullptr);
    EXPECT_EQ(Bovenlaag::verbinding(), &_CGSDefaultConnection);
    EXPECT_EQ(Bovenlaag::maak(), &CGSSpaceCreate);
    EXPECT_EQ(Bovenlaag::zetNiveau(), &CGSSpaceSetAbsoluteLevel);
    EXPECT_EQ(Bovenlaag::toon(), &CGSShowSpaces);
    EXPECT_EQ(Bovenlaag::verberg(), &CGSHideSpaces);
    EXPECT_EQ(Bovenlaag::voeg(), &CGSAddWindowsToSpaces);
    EXPECT_EQ(Bovenlaag::sloop(), &CGSSpaceDestroy);
}

TEST_F(BovenlaagTest, WhereThereIsNoXTheyMakeNoSpace) {
    Bovenlaag::begin(nullptr);
    Bovenlaag::zet(eerste);
    EXPECT_EQ(Bovenlaag::ruimte(), 0U);
    const std::uint64_t getal = 1;
    const CGSNumbers lijst{.values = &getal, .count = 1};
    for (const std::int32_t verbinding : {_CGSDefaultConnection(), 1, 99, -1}) {
        EXPECT_EQ(CGSSpaceCreate(verbinding, 1, nullptr), 0U);
        CGSSpaceSetAbsoluteLevel(verbinding, 1, 1);
        CGSShowSpaces(verbinding, &lijst);
        CGSAddWindowsToSpaces(verbinding, &lijst, &lijst);
        CGSHideSpaces(verbinding, nullptr);
        CGSSpaceDestroy(verbinding, 1);
    }
}

}  // namespace
