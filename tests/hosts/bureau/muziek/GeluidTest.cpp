// SPDX-License-Identifier: MIT
// Beats out of a real sound server: a click track is played into its null output
// and listened to by the output's monitor.
#include <gtest/gtest.h>

#include <mutex>

#include "hosts/bureau/muziek/MuziekLuisteraar.h"
#include "hosts/bureau/muziek/SlagZoeker.h"
#include "tests/support/GeluidServer.h"
#include "tests/support/KlikSpoor.h"

using brixtel::MuziekLuisteraar;
using brixtel::SlagZoeker;
using steun::GeluidServer;
using steun::KlikSpoor;

namespace {

// Times are those of the sound itself, so that a machine that is busy with
// something else changes none.
class DoorDeServer : public testing::TestWithParam<double> {
  protected:
    GeluidServer server;
    std::mutex slot;
    SlagZoeker zoeker{44'100};
    std::vector<double> tijden;  // seconds

    void hoor(std::span<const float> monsters) {
        const std::lock_guard houvast(slot);
        while (!monsters.empty()) {
            const auto stuk = monsters.first(std::min<std::size_t>(monsters.size(), 256));
            const int voor = zoeker.aantal();
            zoeker.voeg(stuk);
            if (zoeker.aantal() > voor)
                tijden.push_back(static_cast<double>(zoeker.laatste().plaats) / 44'100);
            monsters = monsters.subspan(stuk.size());
        }
    }
};

TEST_P(DoorDeServer, EveryClickIsABeat) {
    ASSERT_TRUE(server.loopt());
    const KlikSpoor spoor{.perMinuut = GetParam(), .seconden = 16};
    std::int64_t gehoord = 0;
    const auto monsters = [&] {
        const std::lock_guard houvast(slot);
        return zoeker.monsters();
    };
    platform::MonitorRecorder opname(
        {.server = server.adres()},
        [&](std::span<const float> stuk, double tempo) {
            ASSERT_EQ(tempo, 44'100);
            hoor(stuk);
        },
        [] { ADD_FAILURE() << "the server is gone"; });
    ASSERT_TRUE(until([&] { return monsters() > 0; }));
    ASSERT_TRUE(server.speel(spoor.maak(), spoor.tempo));
    // Half a second of further sound means that the last sound played has been heard.
    gehoord = monsters();
    ASSERT_TRUE(until([&] { return monsters() > gehoord + 22'050; }));

    const std::lock_guard houvast(slot);
    ASSERT_FALSE(tijden.empty());
    int gevonden = 0;
    double grootsteFout = 0;
    for (const double tijd : tijden) {
        const double sinds = (tijd - tijden.front()) / spoor.periode();
        const double fout = std::abs(sinds - std::round(sinds)) * spoor.periode();
        if (fout > 0.06) continue;
        ++gevonden;
        grootsteFout = std::max(grootsteFout, fout);
    }
    EXPECT_GE(gevonden, 0.95 * spoor.kliks());
    EXPECT_LT(static_cast<int>(tijden.size()) - std::min(gevonden, spoor.kliks()),
              0.02 * spoor.kliks());
    RecordProperty("fout_ms", static_cast<int>(1000 * grootsteFout));
}

INSTANTIATE_TEST_SUITE_P(PerMinuut, DoorDeServer, testing::Values(60, 90, 120, 174),
                         [](const auto& geval) { return std::to_string(int(geval.param)); });

struct Luisteraar : testing::Test {
    GeluidServer server;
    platform::SystemClock klok;
    MuziekLuisteraar luisteraar{klok, {.server = server.adres()}};

    void SetUp() override { ASSERT_TRUE(server.loopt()); }
    bool hoort() {
        return until([&] { return luisteraar.stand().has_value(); }, 30'000);
    }
    QString opnamen() {
        return server.pactl(
            {QStringLiteral("list"), QStringLiteral("source-outputs"), QStringLiteral("short")});
    }
};

TEST_F(Luisteraar, TellsBeatsAndLoudness) {
    luisteraar.luister(true);
    ASSERT_TRUE(hoort());
    EXPECT_EQ(luisteraar.stand()->beat, 0);
    EXPECT_EQ(luisteraar.stand()->level, 0.0);
    const KlikSpoor spoor{.perMinuut = 174, .seconden = 3};
    ASSERT_TRUE(server.speel(spoor.maak(), spoor.tempo));
    EXPECT_TRUE(until([&] { return luisteraar.stand()->beat == spoor.kliks(); }))
        << luisteraar.stand()->beat;
    EXPECT_GT(luisteraar.stand()->sterkte, 0.5);
    EXPECT_GE(luisteraar.stand()->vertraging, 0.0);
}

TEST_F(Luisteraar, NothingIsRecordedUnlessAsked) {
    EXPECT_EQ(opnamen(), QString());
    luisteraar.luister(true);
    ASSERT_TRUE(hoort());
    EXPECT_NE(opnamen(), QString());
    luisteraar.luister(false);
    EXPECT_TRUE(until([&] { return opnamen().isEmpty(); }));
    EXPECT_FALSE(server.pactl({QStringLiteral("list"), QStringLiteral("clients")})
                     .contains(QStringLiteral("Brixtel")));
    EXPECT_EQ(luisteraar.stand(), std::nullopt);
    EXPECT_EQ(klok.timerCount(), 0U);
}

TEST_F(Luisteraar, ComesBackByItselfWhenTheServerDoes) {
    luisteraar.luister(true);
    ASSERT_TRUE(hoort());
    const KlikSpoor spoor{.perMinuut = 120, .seconden = 2};
    ASSERT_TRUE(server.speel(spoor.maak(), spoor.tempo));
    ASSERT_TRUE(until([&] { return luisteraar.stand()->beat == spoor.kliks(); }));
    server.stop();
    EXPECT_TRUE(until([&] { return luisteraar.stand() == std::nullopt; }));
    server.start();
    ASSERT_TRUE(hoort());
    // The number goes on counting.
    EXPECT_EQ(luisteraar.stand()->beat, spoor.kliks());
}

}  // namespace
