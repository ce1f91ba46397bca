// SPDX-License-Identifier: MIT
#include "controls/SchuifFocus.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <vector>

using brixtel::SchuifFocus;

namespace {

class SchuifFocusTest : public testing::Test {
  protected:
    ~SchuifFocusTest() override { focus.laatLos(); }

    SchuifFocus::Verzet onthoud() {
        return [this](int stappen) { verzetten.push_back(stappen); };
    }

    SchuifFocus& focus = SchuifFocus::gedeeld();
    std::vector<int> verzetten;
};

TEST_F(SchuifFocusTest, IsOneForTheProcess) {
    EXPECT_EQ(&SchuifFocus::gedeeld(), &focus);
    EXPECT_EQ(SchuifFocus::create(nullptr, nullptr), &focus);
}

TEST_F(SchuifFocusTest, BeginsWithNone) {
    EXPECT_FALSE(focus.actief());
    EXPECT_FALSE(focus.verzet());
}

TEST_F(SchuifFocusTest, TakingItRecordsTheNameAndTheAction) {
    QSignalSpy meldingen(&focus, &SchuifFocus::actiefGewijzigd);
    focus.neem(QStringLiteral("a"), onthoud());
    EXPECT_EQ(focus.actief(), QStringLiteral("a"));
    focus.verzet()(3);
    EXPECT_EQ(verzetten, std::vector{3});
    EXPECT_EQ(meldingen.count(), 1);
}

TEST_F(SchuifFocusTest, OnlyOneHasIt) {
    focus.neem(QStringLiteral("a"), nullptr);
    focus.neem(QStringLiteral("b"), onthoud());
    EXPECT_EQ(focus.actief(), QStringLiteral("b"));
}

TEST_F(SchuifFocusTest, AnotherCannotGiveItUp) {
    focus.neem(QStringLiteral("a"), onthoud());
    focus.laatLos(QStringLiteral("b"));
    EXPECT_EQ(focus.actief(), QStringLiteral("a"));
    EXPECT_TRUE(focus.verzet());
}

TEST_F(SchuifFocusTest, ItsOwnerGivesItUp) {
    focus.neem(QStringLiteral("a"), onthoud());
    focus.laatLos(QStringLiteral("a"));
    EXPECT_FALSE(focus.actief());
    EXPECT_FALSE(focus.verzet());
}

TEST_F(SchuifFocusTest, WithoutANameItIsAlwaysGivenUp) {
    focus.neem(QStringLiteral("a"), onthoud());
    focus.laatLos();
    EXPECT_FALSE(focus.actief());
    EXPECT_FALSE(focus.verzet());
}

TEST_F(SchuifFocusTest, GivingUpWhatNobodyHasIsNothing) {
    QSignalSpy meldingen(&focus, &SchuifFocus::actiefGewijzigd);
    focus.laatLos();
    focus.laatLos(QStringLiteral("a"));
    EXPECT_EQ(meldingen.count(), 0);
}

TEST_F(SchuifFocusTest, ASliderWithoutANameCanHaveIt) {
    focus.neem(QString(), onthoud());
    EXPECT_TRUE(focus.actief());
    focus.laatLos(QStringLiteral("b"));
    EXPECT_TRUE(focus.actief());
}

TEST_F(SchuifFocusTest, APlainArrowIsOneStepAndWithShiftTen) {
    focus.neem(QStringLiteral("a"), onthoud());
    EXPECT_TRUE(focus.toets(Qt::Key_Right, Qt::NoModifier));
    EXPECT_TRUE(focus.toets(Qt::Key_Up, Qt::ShiftModifier));
    EXPECT_TRUE(focus.toets(Qt::Key_Left, Qt::KeypadModifier));
    EXPECT_TRUE(focus.toets(Qt::Key_Down, Qt::ShiftModifier));
    EXPECT_EQ(verzetten, (std::vector{1, 10, -1, -10}));
}

TEST_F(SchuifFocusTest, OtherKeysAreForOthers) {
    focus.neem(QStringLiteral("a"), onthoud());
    EXPECT_FALSE(focus.toets(Qt::Key_Tab, Qt::NoModifier));
    EXPECT_FALSE(focus.toets(Qt::Key_Left, Qt::ControlModifier));
    EXPECT_FALSE(focus.toets(Qt::Key_Left, Qt::AltModifier));
    EXPECT_TRUE(verzetten.empty());
}

TEST_F(SchuifFocusTest, AnArrowWithoutASliderIsForOthers) {
    EXPECT_FALSE(focus.toets(Qt::Key_Right, Qt::NoModifier));
}

TEST_F(SchuifFocusTest, AStepMayGiveItUp) {
    focus.neem(QStringLiteral("a"), [this](int) { focus.laatLos(); });
    EXPECT_TRUE(focus.toets(Qt::Key_Right, Qt::NoModifier));
    EXPECT_FALSE(focus.actief());
}

}  // namespace
