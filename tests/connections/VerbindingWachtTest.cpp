// SPDX-License-Identifier: MIT
#include "connections/VerbindingWacht.h"

#include <gmock/gmock.h>

#include "tests/connections/WachtOpstelling.h"

using brixtel::Lijn;
using brixtel::VerbindingWacht;

namespace {

class VerbindingWachtTest : public steun::WachtOpstelling {};

const std::vector<Lijn> kStandinLijnen{{{"NL", 52.25, 5.5}, {"Proef"}, 1}};

TEST_F(VerbindingWachtTest, IsIdleUntilSomeoneAsks) {
    const auto& wacht = maakWacht();
    EXPECT_EQ(wacht.tussentijd(), 0.0);
    EXPECT_EQ(wacht.totaal().waarde(), 0);
    EXPECT_TRUE(wacht.lijnen().waarde().empty());
    EXPECT_EQ(klok_.timerCount(), 0U);
    klok_.advance(1000.0);
    EXPECT_EQ(starts(), 0);
}

TEST_F(VerbindingWachtTest, TheFirstSubscriberGetsAMeasurementAtOnce) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(wacht.lijnen().waarde(), kStandinLijnen);
    EXPECT_EQ(wacht.totaal().waarde(), 1);
    EXPECT_EQ(wacht.tussentijd(), 3.0);
}

TEST_F(VerbindingWachtTest, MeasuresEveryIntervalAfterThat) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 2.0);
    ASSERT_TRUE(wachtOp(1));
    for (int i = 2; i < 6; ++i) {
        klok_.advance(1.9);
        leeg();
        EXPECT_EQ(starts(), i - 1);
        klok_.advance(0.1);
        ASSERT_TRUE(wachtOp(i));
        EXPECT_EQ(starts(), i);
    }
}

TEST_F(VerbindingWachtTest, TheToolGetsItsFourArgumentsInThisOrder) {
    const std::string pad = (map_ / "argumenten").string();
    qputenv("STANDIN_ARGUMENTEN", pad.c_str());
    (void)VerbindingWacht::meet({.tabel = *tabel_, .lsof = steun::kStandin});
    qunsetenv("STANDIN_ARGUMENTEN");
    std::ifstream bestand(pad);
    std::vector<std::string> argumenten;
    for (std::string regel; std::getline(bestand, regel);)
        argumenten.push_back(regel);
    EXPECT_THAT(argumenten, testing::ElementsAre("-nP", "-iTCP", "-sTCP:ESTABLISHED", "-FcnT"));
}

TEST_F(VerbindingWachtTest, TheSmallestIntervalCountsAndAChangeMeasuresNothingByItself) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 3.0);
    ASSERT_TRUE(wachtOp(1));
    wacht.gebruik("b", true, 1.0);
    EXPECT_EQ(wacht.tussentijd(), 1.0);
    klok_.advance(1.0);
    ASSERT_TRUE(wachtOp(2));

    wacht.gebruik("b", false);
    EXPECT_EQ(wacht.tussentijd(), 3.0);
    klok_.advance(2.9);
    leeg();
    EXPECT_EQ(starts(), 2);
    klok_.advance(0.1);
    ASSERT_TRUE(wachtOp(3));

    wacht.gebruik("a", false);
    EXPECT_EQ(wacht.tussentijd(), 0.0);
    EXPECT_EQ(klok_.timerCount(), 0U);
    klok_.advance(100.0);
    leeg();
    EXPECT_EQ(starts(), 3);
}

// A measurement made by the change would be published before the later ones: the
// queue is a serial one.
TEST_F(VerbindingWachtTest, AChangeOfTheIntervalMeasuresNothing) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 3.0);
    ASSERT_TRUE(wachtOp(1));
    wacht.gebruik("b", true, 1.0);
    leeg();
    EXPECT_EQ(starts(), 1);
    wacht.gebruik("b", false);
    leeg();
    EXPECT_EQ(starts(), 1);
    klok_.advance(3.0);
    ASSERT_TRUE(wachtOp(2));
    leeg();
    EXPECT_EQ(starts(), 2);
    EXPECT_EQ(gepubliceerd_, 2);
}

TEST_F(VerbindingWachtTest, ALargerIntervalThanTheSmallestChangesNothing) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 1.0);
    ASSERT_TRUE(wachtOp(1));
    klok_.advance(0.6);
    wacht.gebruik("b", true, 3.0);
    wacht.gebruik("b", false);
    klok_.advance(0.4);
    EXPECT_TRUE(wachtOp(2));  // one interval after the first, as if nothing had been
}

TEST_F(VerbindingWachtTest, TheSameKeyWithTheSameIntervalChangesNothing) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 2.0);
    ASSERT_TRUE(wachtOp(1));
    klok_.advance(1.5);
    wacht.gebruik("a", true, 2.0);
    leeg();
    EXPECT_EQ(starts(), 1);
    klok_.advance(0.5);
    EXPECT_TRUE(wachtOp(2));
}

TEST_F(VerbindingWachtTest, TheSameKeyWithAnotherIntervalReplacesItsWish) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 2.0);
    wacht.gebruik("a", true, 30.0);
    EXPECT_EQ(wacht.tussentijd(), 30.0);
    wacht.gebruik("a", false);
    EXPECT_EQ(wacht.tussentijd(), 0.0);
}

TEST_F(VerbindingWachtTest, RemovingAnUnknownKeyChangesNothing) {
    auto& wacht = maakWacht();
    wacht.gebruik("b", false);
    EXPECT_EQ(wacht.tussentijd(), 0.0);
    wacht.gebruik("a", true, 2.0);
    wacht.gebruik("b", false);
    EXPECT_EQ(wacht.tussentijd(), 2.0);
}

TEST_F(VerbindingWachtTest, StartingAgainMeasuresAtOnceAgain) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true);
    ASSERT_TRUE(wachtOp(1));
    wacht.gebruik("a", false);
    wacht.gebruik("a", true);
    ASSERT_TRUE(wachtOp(2));
    EXPECT_EQ(starts(), 2);
}

TEST_F(VerbindingWachtTest, TheTimerMayBeLateByFifteenPercent) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 2.0);
    ASSERT_TRUE(wachtOp(1));
    // Another timer that is due within those fifteen percent takes this one along.
    class LateKlok : public platform::MediaClock {
      public:
        [[nodiscard]] double now() const override { return 0.0; }
        using MediaClock::nextWake;
    };
    LateKlok klok;
    VerbindingWacht ander(klok, {.tabel = *tabel_, .lsof = "/no/such/tool"});
    ander.gebruik("a", true, 2.0);
    EXPECT_DOUBLE_EQ(klok.nextWake(), 2.0);
    platform::Timer binnen(klok, {.interval = 2.29}, [] {});
    EXPECT_DOUBLE_EQ(klok.nextWake(), 2.29);
    platform::Timer buiten(klok, {.interval = 2.31}, [] {});
    EXPECT_DOUBLE_EQ(klok.nextWake(), 2.29);
}

TEST_F(VerbindingWachtTest, TheTotalIsNewWhenTheLinesAreTold) {
    auto& wacht = maakWacht();
    std::vector<std::int64_t> totalen;
    const auto abonnement =
        wacht.lijnen().volg([&](const auto&) { totalen.push_back(wacht.totaal().waarde()); });
    std::vector<std::size_t> regels;
    const auto ander = wacht.totaal().volg(
        [&](std::int64_t) { regels.push_back(wacht.lijnen().waarde().size()); });
    wacht.gebruik("a", true);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_THAT(totalen, testing::ElementsAre(0, 1));
    EXPECT_THAT(regels, testing::ElementsAre(0, 0));
}

TEST_F(VerbindingWachtTest, EveryMeasurementIsPublishedAlsoWhenNothingChanged) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 1.0);
    ASSERT_TRUE(wachtOp(1));
    klok_.advance(1.0);
    ASSERT_TRUE(wachtOp(2));
}

TEST_F(VerbindingWachtTest, AMeasurementInFlightWhenWatchingStopsStillPublishes) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true);
    wacht.gebruik("a", false);
    EXPECT_EQ(gepubliceerd_, 0);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(wacht.lijnen().waarde(), kStandinLijnen);
}

TEST_F(VerbindingWachtTest, TheLastValuesAreKeptWhenWatchingStops) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true);
    ASSERT_TRUE(wachtOp(1));
    wacht.gebruik("a", false);
    EXPECT_EQ(wacht.lijnen().waarde(), kStandinLijnen);
    EXPECT_EQ(wacht.totaal().waarde(), 1);
}

TEST_F(VerbindingWachtTest, AnIntervalThatIsNotAboveZeroStartsNoTimer) {
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 0.0);
    wacht.gebruik("b", true, -1.0);
    EXPECT_EQ(klok_.timerCount(), 0U);
    leeg();
    EXPECT_EQ(starts(), 0);
}

TEST_F(VerbindingWachtTest, ASubscriberMayDropTheWatcherWhenToldTheTotal) {
    auto& wacht = maakWacht();
    const auto abonnement = wacht.totaal().volg([&](std::int64_t totaal) {
        if (totaal == 1) wacht_.reset();
    });
    wacht.gebruik("a", true);
    EXPECT_TRUE(steun::draaiTot([&] { return !wacht_; }));
    EXPECT_EQ(gepubliceerd_, 0);
}

TEST_F(VerbindingWachtTest, TenThousandMeasurementsLeaveNothingBehind) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    constexpr int kKeer = 1000;  // the leak checker sees what the others would show
#else
    constexpr int kKeer = 10'000;
#endif
    qunsetenv("STANDIN_GESTART");
    auto& wacht = maakWacht();
    wacht.gebruik("a", true, 1.0);
    long descriptors = 0;
    std::size_t geheugen = 0;
    for (int i = 1; i <= kKeer; ++i) {
        ASSERT_TRUE(wachtOp(i));
        ASSERT_EQ(wacht.totaal().waarde(), 1);
        ASSERT_FALSE(steun::heeftKinderen());
        if (i == kKeer / 10) {
            descriptors = steun::descriptors();
            geheugen = steun::geheugenInGebruik();
        }
        klok_.advance(1.0);
    }
    ASSERT_TRUE(wachtOp(kKeer + 1));
    EXPECT_EQ(steun::descriptors(), descriptors);
    EXPECT_LT(steun::geheugenInGebruik(), geheugen + 4096);
}

}  // namespace
