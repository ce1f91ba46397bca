// SPDX-License-Identifier: MIT
// The kit's drawings in a real window of 1.5 pixels to the point.
#include <gtest/gtest.h>

#include <QQuickWindow>
#include <QSignalSpy>

#include "controls/BXBalken.h"
#include "controls/BXVlak.h"
#include "tests/support/Until.h"

using brixtel::BXBalken;
using brixtel::BXTekening;
using brixtel::BXVlak;

namespace {

// Qt reads the variable when the application is made.
const bool kGeschaald = qputenv("QT_SCALE_FACTOR", "1.5");

class VensterTest : public testing::Test {
  protected:
    VensterTest() {
        venster.setColor(Qt::black);
        venster.resize(60, 40);
        houder.setParentItem(venster.contentItem());
        vlak.setParentItem(&houder);
        vlak.setSize({13, 11});
        vlak.zetKleur(Qt::red);
    }
    void SetUp() override {
        ASSERT_TRUE(kGeschaald);
        venster.show();
        ASSERT_TRUE(until([this] { return venster.isExposed(); }));
        ASSERT_EQ(venster.effectiveDevicePixelRatio(), 1.5);
    }

    // Where there is pure red, and whether there is anything but red and black.
    QRect rood(bool& zuiver) {
        const QImage beeld = venster.grabWindow();
        QRect plek;
        zuiver = true;
        for (int y = 0; y < beeld.height(); ++y)
            for (int x = 0; x < beeld.width(); ++x) {
                const QRgb punt = beeld.pixel(x, y);
                if (punt == 0xFFFF0000) plek |= QRect(x, y, 1, 1);
                zuiver = zuiver && (punt == 0xFFFF0000 || punt == 0xFF000000);
            }
        return plek;
    }
    void verwachtScherp() {
        bool zuiver = false;
        EXPECT_EQ(rood(zuiver), BXTekening::raster({vlak.mapToScene({}), vlak.size()}, 1.5));
        EXPECT_TRUE(zuiver);
    }

    QQuickWindow venster;
    QQuickItem houder;
    BXVlak vlak;
};

TEST_F(VensterTest, LiesOnWholePixelsWhereverItStands) {
    verwachtScherp();
    vlak.setPosition({3.3, 2.7});
    verwachtScherp();
}

TEST_F(VensterTest, StaysOnThemWhenWhatHoldsItMoves) {
    for (const QPointF plaats : {QPointF(1.0, 1.0), {2.3, 5.9}, {7.5, 0.5}}) {
        houder.setPosition(plaats);
        verwachtScherp();
    }
}

TEST_F(VensterTest, FollowsItsSizeAndColour) {
    vlak.setSize({5, 5});
    verwachtScherp();
    vlak.zetKleur(Qt::green);
    bool zuiver = false;
    EXPECT_EQ(rood(zuiver), QRect());
    vlak.zetKleur(Qt::red);
    verwachtScherp();
}

TEST_F(VensterTest, IsGoneWithoutASize) {
    verwachtScherp();
    vlak.setWidth(0);
    bool zuiver = false;
    EXPECT_EQ(rood(zuiver), QRect());
    EXPECT_TRUE(zuiver);
    vlak.setWidth(13);
    verwachtScherp();
}

TEST_F(VensterTest, GoesToAnotherWindow) {
    QQuickWindow ander;
    ander.resize(60, 40);
    houder.setParentItem(ander.contentItem());
    bool zuiver = false;
    EXPECT_EQ(rood(zuiver), QRect());
    houder.setParentItem(venster.contentItem());
    verwachtScherp();
}

TEST_F(VensterTest, NothingIsDrawnWhileNothingChanges) {
    QSignalSpy beelden(&venster, &QQuickWindow::frameSwapped);
    vlak.zetKleur(Qt::blue);
    ASSERT_TRUE(until([&] { return beelden.count() > 0; }));
    QCoreApplication::processEvents();
    const qsizetype tot = beelden.count();
    // Events that wait already come before events that are asked for now.
    for (int i = 0; i < 100; ++i)
        QCoreApplication::processEvents();
    EXPECT_EQ(beelden.count(), tot);
}

}  // namespace
