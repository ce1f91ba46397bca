// SPDX-License-Identifier: MIT
// The switch's way from off to on, with the animations' clock moved by hand.
#include <gtest/gtest.h>

#include <QAnimationDriver>
#include <QCoreApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <memory>

#include "controls/BX.h"
#include "controls/BXTweestand.h"
#include "controls/BXVlak.h"

using brixtel::BXKleur;
using brixtel::BXTweestand;
using brixtel::BXVlak;

namespace {

class HandKlok final : public QAnimationDriver {
  public:
    HandKlok() { install(); }
    ~HandKlok() override { uninstall(); }
    [[nodiscard]] qint64 elapsed() const override { return nu_; }
    void zet(qint64 milliseconden) {
        nu_ = milliseconden;
        advanceAnimation();
    }

  private:
    qint64 nu_ = 0;
};

// Ease-out: the Bézier curve from (0, 0) by (0, 0) and (0.58, 1) to (1, 1), at x.
double uitlopend(double x) {
    double onder = 0.0, boven = 1.0;
    for (int i = 0; i < 60; ++i) {
        const double t = (onder + boven) / 2.0;
        const double hier = 3.0 * (1.0 - t) * t * t * 0.58 + t * t * t;
        (hier < x ? onder : boven) = t;
    }
    return 3.0 * (1.0 - onder) * onder * onder + onder * onder * onder;
}

class SchakelTest : public testing::Test {
  protected:
    SchakelTest() {
        brixtel::bxBereid(machine);
        QQmlComponent onderdeel(&machine);
        onderdeel.setData("import Brixtel.Controls\nBXSchakelStijl {}", QUrl());
        schakel.reset(qobject_cast<BXTweestand*>(onderdeel.create()));
    }
    void SetUp() override {
        ASSERT_TRUE(schakel);
        for (auto [naam, vlak] :
             {std::pair("baan", &baan), std::pair("knop", &knop), std::pair("licht", &licht)}) {
            *vlak = schakel->findChild<BXVlak*>(QLatin1String(naam));
            ASSERT_TRUE(*vlak) << naam;
        }
    }
    // An animation begins when the event loop next turns.
    void zetAan(bool aan) {
        schakel->zetAan(aan);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents();
    }
    // Expects every layer of the switch at that part of the way from off to on.
    void verwachtOp(double deel) {
        EXPECT_NEAR(knop->x(), 2.5 + 16.0 * deel, 0.05);
        EXPECT_NEAR(baan->kleur().alphaF(), 0.22 * deel, 0.006);
        EXPECT_NEAR(licht->kleur().alphaF(), 0.9 * deel, 0.006);
        const QColor van = BXKleur::bxDonker(), naar = BXKleur::bx();
        EXPECT_NEAR(baan->rand().greenF(), van.greenF() + (naar.greenF() - van.greenF()) * deel,
                    0.006);
        EXPECT_NEAR(baan->rand().blueF(), van.blueF() + (naar.blueF() - van.blueF()) * deel, 0.006);
    }

    HandKlok klok;
    QQmlEngine machine;
    std::unique_ptr<BXTweestand> schakel;
    BXVlak *baan = nullptr, *knop = nullptr, *licht = nullptr;
};

TEST_F(SchakelTest, EasesOutOverTwelveHundredthsOfASecond) {
    zetAan(true);
    for (const int milliseconden : {0, 10, 30, 60, 90, 110, 119}) {
        SCOPED_TRACE(milliseconden);
        klok.zet(milliseconden);
        verwachtOp(uitlopend(milliseconden / 120.0));
        EXPECT_LT(knop->x(), 18.5);
    }
    klok.zet(120);
    EXPECT_EQ(knop->x(), 18.5);
    verwachtOp(1.0);
}

TEST_F(SchakelTest, EasesOutOnTheWayBackToo) {
    zetAan(true);
    klok.zet(120);
    zetAan(false);
    for (const int milliseconden : {0, 10, 30, 60, 90, 110, 120}) {
        SCOPED_TRACE(milliseconden);
        klok.zet(120 + milliseconden);
        verwachtOp(1.0 - uitlopend(milliseconden / 120.0));
    }
    EXPECT_EQ(knop->x(), 2.5);
}

TEST_F(SchakelTest, IsWellPastTheMiddleHalfwayThrough) {
    zetAan(true);
    klok.zet(60);
    EXPECT_GT(knop->x(), 2.5 + 16.0 * 0.65);
}

TEST_F(SchakelTest, BeginsWhereItIsWithoutMoving) {
    QQmlComponent onderdeel(&machine);
    onderdeel.setData("import Brixtel.Controls\nBXSchakelStijl { aan: true }", QUrl());
    const std::unique_ptr<QObject> aan(onderdeel.create());
    ASSERT_TRUE(aan);
    EXPECT_EQ(aan->findChild<BXVlak*>(QStringLiteral("knop"))->x(), 18.5);
    EXPECT_EQ(aan->findChild<BXVlak*>(QStringLiteral("baan"))->rand(), BXKleur::bx());
}

TEST_F(SchakelTest, OneLayerIsNineTenthsGreenWhenOnAndClearWhenOff) {
    EXPECT_EQ(licht->kleur().alpha(), 0);
    EXPECT_EQ(licht->mapToItem(knop, QPointF()), QPointF());
    EXPECT_EQ(licht->size(), knop->size());
    zetAan(true);
    klok.zet(120);
    EXPECT_EQ(licht->kleur().rgb(), BXKleur::bx().rgb());
    EXPECT_NEAR(licht->kleur().alphaF(), 0.9, 1.0 / 255);
}

}  // namespace
