// SPDX-License-Identifier: MIT
#include "hosts/saver/Meting.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <set>

using brixtel::Meting;

namespace {

class MetingTest : public testing::Test {
  protected:
    platform::ManualClock klok{50.0};
    platform::WindowStatistics stand;
    Meting meting{klok, 49.8, [this] { return stand; }};

    QJsonObject lees() {
        const QByteArray regel = meting.regel(QStringLiteral("regen"));
        EXPECT_EQ(regel.count('\n'), 1);
        EXPECT_TRUE(regel.endsWith('\n'));
        return QJsonDocument::fromJson(regel).object();
    }
    void loop(double seconden, std::uint64_t beeldenPerSeconde) {
        for (double t = 0.0; t < seconden; t += 0.5) {
            klok.advance(0.25);
            stand.frames += beeldenPerSeconde / 2;
            klok.advance(0.25);
        }
    }
};

TEST_F(MetingTest, HasExactlyItsNineKeys) {
    const QStringList sleutels = lees().keys();
    EXPECT_EQ(std::set<QString>(sleutels.begin(), sleutels.end()),
              (std::set<QString>{QStringLiteral("keuze"), QStringLiteral("beelden"),
                                 QStringLiteral("seconden"), QStringLiteral("beelden_per_seconde"),
                                 QStringLiteral("cpu_seconden"), QStringLiteral("eerste_beeld_ms"),
                                 QStringLiteral("geheugen_mb"), QStringLiteral("tekenaar"),
                                 QStringLiteral("sport")}));
}

TEST_F(MetingTest, TheRateIsThatOfTheLastHalf) {
    loop(10, 10);
    loop(10, 60);
    EXPECT_NEAR(lees()[QLatin1String("beelden_per_seconde")].toDouble(), 60.0, 0.01);
    EXPECT_EQ(lees()[QLatin1String("beelden")].toInt(), 700);
    EXPECT_NEAR(lees()[QLatin1String("seconden")].toDouble(), 20.0, 1e-9);
}

TEST_F(MetingTest, ARunOfADayStillKnowsItsLastHalf) {
    loop(43'200, 20);
    loop(43'200, 40);
    EXPECT_NEAR(lees()[QLatin1String("beelden_per_seconde")].toDouble(), 40.0, 0.1);
}

TEST_F(MetingTest, TheFirstPictureCountsFromTheStartOfTheProcess) {
    EXPECT_TRUE(lees()[QLatin1String("eerste_beeld_ms")].isNull());
    stand.firstFrameTime = 50.037;
    EXPECT_NEAR(lees()[QLatin1String("eerste_beeld_ms")].toDouble(), 237.0, 1e-6);
}

TEST_F(MetingTest, PassesOnWhatDrewAndAtWhichRung) {
    stand.drawer = QStringLiteral("cpu");
    stand.rung = 2;
    EXPECT_EQ(lees()[QLatin1String("tekenaar")].toString(), QStringLiteral("cpu"));
    EXPECT_EQ(lees()[QLatin1String("sport")].toInt(), 2);
    EXPECT_GT(lees()[QLatin1String("geheugen_mb")].toDouble(), 1.0);
    EXPECT_GT(lees()[QLatin1String("cpu_seconden")].toDouble(), 0.0);
}

}  // namespace
