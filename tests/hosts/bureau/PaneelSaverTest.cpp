// SPDX-License-Identifier: MIT
// The saver's own sheet, opened from the panel.
#include <QTest>

#include "BrixtelSaver/SaverInstellingen.h"
#include "tests/hosts/bureau/PaneelProef.h"
#include "tests/hosts/gedeeld/NepSaver.h"

using namespace brixtel;

namespace {

class MetSaver : public PaneelProef {
  protected:
    NepSaver saver;

    void SetUp() override {
        PaneelProef::SetUp();
        toon();
    }
    void openBlad(int keren = 1) {
        druk(QAccessible::Button, "Open de instellingen");
        ASSERT_TRUE(until([=, this] { return saver.keren() == keren; }));
    }
    void sluitPaneel() {
        QTest::keyClick(view(), Qt::Key_Escape);
        ASSERT_TRUE(until([this] { return !paneel->isOpen(); }));
    }
};

TEST_F(MetSaver, ItsSheetOpensAboveThePanelOnceAndItsModeIsReadAfterIt) {
    openBlad();
    EXPECT_EQ(saver.woorden(),
              "--instellingen --boven=" + QByteArray::number(view()->winId()) + '\n');
    druk(QAccessible::Button, "Open de instellingen");
    ASSERT_TRUE(saver.eindig("tunnel"));
    EXPECT_TRUE(until([this] { return isGekozen("TUNNEL", kSaver); }));
    EXPECT_FALSE(item("saverMelding")->isVisible());
    EXPECT_EQ(saver.keren(), 1);
    openBlad(2);
    ASSERT_TRUE(saver.eindig("logo"));
    EXPECT_TRUE(until([this] { return isGekozen("LOGO", kSaver); }));
}

// The sheet would undo a choice of the panel as it closes.
TEST_F(MetSaver, WhileItsSheetIsOpenItsModeIsChosenThereAlone) {
    openBlad();
    druk(QAccessible::RadioButton, "TUNNEL", kSaver);
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::wisselend);
    sluitPaneel();
    toon();
    druk(QAccessible::RadioButton, "TUNNEL", kSaver);
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
    ASSERT_TRUE(saver.eindig("kubus"));
    EXPECT_TRUE(until([this] { return isGekozen("KUBUS", kSaver); }));
    druk(QAccessible::RadioButton, "TUNNEL", kSaver);
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::tunnel);
}

TEST_F(MetSaver, ItsSheetStaysWhenThePanelClosesAndANewPanelShowsWhatCameOfIt) {
    openBlad();
    sluitPaneel();
    toon();
    EXPECT_TRUE(isGekozen("WISSELEND", kSaver));
    ASSERT_TRUE(saver.eindig("kubus"));
    EXPECT_TRUE(until([this] { return isGekozen("KUBUS", kSaver); }));
    openBlad(2);
    sluitPaneel();
    ASSERT_TRUE(saver.eindig("bol"));
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::bol);
    toon();
    EXPECT_TRUE(isGekozen("BOL", kSaver));
}

TEST_F(MetSaver, ItsSheetStaysWhenTheOwnerEnds) {
    openBlad();
    paneel.reset();
    ASSERT_TRUE(saver.eindig("regen"));
    EXPECT_EQ(SaverInstellingen::keuze(), SaverKeuze::regen);
}

TEST_F(MetSaver, ThatItFailedIsNotSaidWhileItsSheetIsOpen) {
    const QByteArray pad = qgetenv("PATH");
    qputenv("PATH", "/nonexistent");
    druk(QAccessible::Button, "Open de instellingen");
    ASSERT_TRUE(until([this] { return item("saverMelding")->isVisible(); }));
    qputenv("PATH", pad);
    openBlad();
    EXPECT_FALSE(item("saverMelding")->isVisible());
    ASSERT_TRUE(saver.eindig("-", 1));
    EXPECT_TRUE(until([this] { return item("saverMelding")->isVisible(); }));
}

}  // namespace
