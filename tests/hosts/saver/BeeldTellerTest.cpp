// SPDX-License-Identifier: MIT
#include "hosts/saver/BeeldTeller.h"

#include <gtest/gtest.h>

#include <QFontMetricsF>
#include <QRegularExpression>

#include "drawing/Thema.h"
#include "platform/window/Window.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

using brixtel::BeeldTeller;

namespace {

class Teller : public testing::Test {
  protected:
    Xvfb x;
    platform::ManualClock klok;
    platform::WindowServer server{
        klok, {.drawer = platform::DrawerChoice::Cpu, .system = systemOn(klok, x.display())}};
    xcb_window_t nummer = x.makeWindow({.width = 400, .height = 300});
    platform::Window venster{server, hostRef(nummer)};
    std::shared_ptr<platform::View> beeld =
        std::make_shared<platform::View>(QRectF(0, 0, 400, 300));
    std::shared_ptr<BeeldTeller> teller = std::make_shared<BeeldTeller>(klok, 300);

    void SetUp() override {
        beeld->setWantsLayer(true);
        beeld->layer()->setBackgroundColor(Qt::black);
        beeld->addSubview(teller);
        venster.setContentView(beeld);
    }
    // Frames that the window has shown, one after the other.
    void toon(std::uint64_t aantal) {
        const auto voor = venster.statistics().frames;
        for (std::uint64_t i = 1; i <= aantal; ++i) {
            beeld->layer()->setBackgroundColor(i % 2 == 0 ? Qt::black : QColor(1, 1, 1));
            klok.advance(0.02);
            ASSERT_TRUE(until([&] { return venster.statistics().frames >= voor + i; }));
        }
    }
};

TEST_F(Teller, SaysNothingBeforeTheFirstSecondIsOver) {
    toon(10);
    EXPECT_TRUE(teller->regels()[0].isEmpty());
}

TEST_F(Teller, CountsTheFramesOfTheLastSecondInDutch) {
    toon(25);
    klok.advance(0.51);
    // The count holds the frames above, and one or two that the window drew by itself.
    static const QRegularExpression vorm(QStringLiteral("^2[5-7],0 beelden/s$"));
    EXPECT_TRUE(vorm.match(teller->regels()[0]).hasMatch()) << qPrintable(teller->regels()[0]);
    static const QRegularExpression last(QStringLiteral("^belasting [0-9]+%$"));
    EXPECT_TRUE(last.match(teller->regels()[1]).hasMatch()) << qPrintable(teller->regels()[1]);
}

TEST_F(Teller, HasRoomForThreeDigitsAndATenth) {
    const auto breedte = [](const char* tekst, bool vet) {
        return QFontMetricsF(brixtel::Thema::font(14, {.vet = vet}))
            .horizontalAdvance(QLatin1String(tekst));
    };
    // The text leaves the same room on both sides.
    const double ruimte = teller->frame().width() - 16;
    EXPECT_LE(breedte("999,9 beelden/s", true), ruimte);
    EXPECT_LE(breedte("belasting 1600%", false), ruimte);
}

TEST_F(Teller, StandsInTheUpperLeftCornerAlsoAfterTheWindowGrew) {
    klok.advance(1.0);
    EXPECT_EQ(teller->frame().left(), 16.0);
    EXPECT_EQ(teller->frame().top() + teller->frame().height(), 300 - 16.0);
    EXPECT_FALSE(teller->layer()->contents().isNull());
    beeld->setFrame(QRectF(0, 0, 800, 600));
    klok.advance(1.0);
    EXPECT_EQ(teller->frame().top() + teller->frame().height(), 600 - 16.0);
}

}  // namespace
