// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/layers/Layer.h"

using namespace platform;

namespace {

constexpr QRectF kWindow(0.0, 0.0, 1000.0, 1000.0);

std::shared_ptr<Layer> layer(const QRectF& frame, const QColor& colour = {}) {
    auto made = std::make_shared<Layer>();
    made->setFrame(frame);
    made->setBackgroundColor(colour);
    return made;
}

DisplayList shown(Layer& root) {
    DisplayList list;
    DisplayListBuilder(list, 0.0).add(root, {}, kWindow);
    return list;
}

TEST(Mask, LiesInTheLayersOwnCoordinatesWithItsSublayers) {
    const auto root = layer({10.0, 20.0, 100.0, 100.0}, Qt::red);
    const auto mask = layer({0.0, 0.0, 100.0, 100.0});
    mask->addSublayer(layer({5.0, 5.0, 10.0, 10.0}, Qt::white));
    mask->addSublayer(layer({50.0, 5.0, 10.0, 10.0}, QColor(0, 0, 0, 51)));
    mask->setOpacity(0.5);
    root->setMask(mask);
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 1U);
    ASSERT_EQ(list.items[0].mask, 0);
    EXPECT_EQ(list.masks[0].outer, -1);
    ASSERT_EQ(list.masks[0].pieceCount, 2U);
    const DisplayItem* const pieces = &list.pieces[list.masks[0].firstPiece];
    EXPECT_EQ(pieces[0].rect, QRectF(15.0, 25.0, 10.0, 10.0));
    EXPECT_FLOAT_EQ(pieces[0].opacity, 0.5F);
    EXPECT_FLOAT_EQ(pieces[1].colour.a, 0.2F);
}

TEST(Mask, CoversTheLayerAndItsSublayers) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->addSublayer(layer({0.0, 0.0, 50.0, 50.0}, Qt::green));
    root->setMask(layer({5.0, 5.0, 10.0, 10.0}, Qt::white));
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 2U);
    EXPECT_EQ(list.items[0].mask, 0);
    EXPECT_EQ(list.items[1].mask, 0);
    EXPECT_EQ(list.masks.size(), 1U);
}

TEST(Mask, ItsOwnOpacityDoesNotTakeTheLayersTwice) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->setMask(layer({5.0, 5.0, 10.0, 10.0}, Qt::white));
    root->setOpacity(0.5);
    const DisplayList list = shown(*root);
    EXPECT_FLOAT_EQ(list.items.at(0).opacity, 0.5F);
    EXPECT_FLOAT_EQ(list.pieces.at(0).opacity, 1.0F);
}

TEST(Mask, OuterMasksMultiplyToo) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto child = layer({0.0, 0.0, 50.0, 50.0}, Qt::green);
    root->addSublayer(child);
    root->setMask(layer({5.0, 5.0, 10.0, 10.0}, Qt::white));
    child->setMask(layer({0.0, 0.0, 20.0, 20.0}, Qt::white));
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.masks.size(), 2U);
    EXPECT_EQ(list.items.at(0).mask, 0);
    EXPECT_EQ(list.items.at(1).mask, 1);
    EXPECT_EQ(list.masks[1].outer, 0);
}

TEST(Mask, WhereItHasNothingTheLayerIsLeftOutButItsAnimationIsAwaited) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto mask = layer({0.0, 0.0, 100.0, 100.0});
    const auto piece = layer({0.0, 100.0, 100.0, 20.0}, Qt::white);
    mask->addSublayer(piece);
    root->setMask(mask);
    piece->addAnimation("fall",
                        KeyframeAnimation{.keyPath = KeyPath::PositionY,
                                          .values = {110.0, 90.0},
                                          .calculationMode = CalculationMode::Discrete,
                                          .timing = {.duration = 2.0}},
                        5.0);
    DisplayList list;
    DisplayListBuilder(list, 5.0).add(*root, {}, kWindow);
    EXPECT_TRUE(list.items.empty());
    EXPECT_DOUBLE_EQ(list.nextChange, 6.0);
    DisplayListBuilder(list, 6.0).add(*root, {}, kWindow);
    EXPECT_EQ(list.items.size(), 1U);
}

TEST(Mask, AnEmptyMaskShowsNothing) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->addSublayer(layer({0.0, 0.0, 50.0, 50.0}, Qt::green));
    root->setMask(layer({0.0, 0.0, 100.0, 100.0}));
    EXPECT_TRUE(shown(*root).items.empty());
}

TEST(Mask, ItsOwnMasksToBoundsClipsItsPieces) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->addSublayer(layer({0.0, 0.0, 100.0, 100.0}, Qt::green));
    const auto mask = layer({10.0, 10.0, 20.0, 20.0});
    mask->addSublayer(layer({0.0, 0.0, 50.0, 50.0}, Qt::white));
    mask->setMasksToBounds(true);
    root->setMask(mask);
    EXPECT_EQ(shown(*root).pieces.at(0).clip, QRectF(10.0, 10.0, 20.0, 20.0));
}

TEST(MaskDeathTest, AMaskWithinAMaskIsAProgrammingError) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto mask = layer({0.0, 0.0, 100.0, 100.0}, Qt::white);
    mask->setMask(layer({0.0, 0.0, 10.0, 10.0}, Qt::white));
    root->setMask(mask);
    EXPECT_DEATH(shown(*root), "");
}

}  // namespace
