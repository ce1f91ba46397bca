// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "platform/layers/DisplayListBuilder.h"
#include "platform/layers/Layer.h"

using namespace platform;
using Kind = DisplayItem::Kind;

namespace {

constexpr QRectF kWindow(0.0, 0.0, 1000.0, 1000.0);

template <typename L = Layer>
std::shared_ptr<L> layer(const QRectF& frame, const QColor& colour = {}) {
    auto made = std::make_shared<L>();
    made->setFrame(frame);
    made->setBackgroundColor(colour);
    return made;
}

DisplayList shown(Layer& root, const QRectF& clip = kWindow, double opacity = 1.0) {
    DisplayList list;
    DisplayListBuilder(list, 0.0).add(root, {}, clip, opacity);
    return list;
}

QImage picture() {
    QImage image(4, 4, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

TEST(DisplayList, ASublayerLiesInItsSuperlayersBounds) {
    const auto root = layer({10.0, 20.0, 100.0, 100.0});
    const auto child = layer({5.0, 6.0, 10.0, 10.0}, Qt::red);
    root->addSublayer(child);
    EXPECT_EQ(shown(*root).items.at(0).rect, QRectF(15.0, 26.0, 10.0, 10.0));
    root->setBounds({2.0, 1.0, 100.0, 100.0});
    EXPECT_EQ(shown(*root).items.at(0).rect, QRectF(13.0, 25.0, 10.0, 10.0));
}

TEST(DisplayList, StartsAtTheOriginItIsGiven) {
    const auto root = layer({10.0, 20.0, 100.0, 100.0}, Qt::red);
    DisplayList list;
    DisplayListBuilder(list, 0.0).add(*root, {3.0, 4.0}, kWindow);
    EXPECT_EQ(list.items.at(0).rect, QRectF(13.0, 24.0, 100.0, 100.0));
}

TEST(DisplayList, DrawsALayerThenItsSublayersInOrder) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto first = layer({0.0, 0.0, 10.0, 10.0}, Qt::green);
    const auto inner = layer({0.0, 0.0, 5.0, 5.0}, Qt::blue);
    const auto second = layer({20.0, 0.0, 10.0, 10.0}, Qt::white);
    root->addSublayer(first);
    root->addSublayer(second);
    first->addSublayer(inner);
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 4U);
    EXPECT_EQ(list.items[0].colour, Rgba::from(Qt::red));
    EXPECT_EQ(list.items[1].colour, Rgba::from(Qt::green));
    EXPECT_EQ(list.items[2].colour, Rgba::from(Qt::blue));
    EXPECT_EQ(list.items[3].colour, Rgba::from(Qt::white));
    for (std::size_t i = 1; i < list.items.size(); ++i)
        EXPECT_GT(list.items[i].order, list.items[i - 1].order);
}

TEST(DisplayList, DrawsBackgroundThenGradientThenContents) {
    const auto root = layer<GradientLayer>({0.0, 0.0, 4.0, 4.0}, Qt::red);
    root->setStops({{.location = 0.0, .colour = Qt::white}, {.location = 1.0, .colour = Qt::blue}});
    const QImage image = picture();
    root->setContents(image);
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 3U);
    EXPECT_EQ(list.items[0].kind, Kind::Colour);
    EXPECT_EQ(list.items[1].kind, Kind::Gradient);
    EXPECT_EQ(list.items[2].kind, Kind::Image);
    EXPECT_EQ(list.items[2].image.cacheKey(), image.cacheKey());
    EXPECT_EQ(list.items[2].rect, QRectF(0.0, 0.0, 4.0, 4.0));
}

TEST(DisplayList, AGradientGoesFromBottomToTopByDefault) {
    const auto root = layer<GradientLayer>({0.0, 0.0, 10.0, 10.0});
    root->setStops({{.location = 0.25, .colour = Qt::white},
                    {.location = 0.75, .colour = QColor(255, 255, 255, 0)}});
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 1U);
    const DisplayItem& item = list.items[0];
    EXPECT_EQ(item.start, QPointF(0.5, 0.0));
    EXPECT_EQ(item.end, QPointF(0.5, 1.0));
    ASSERT_EQ(item.stopCount, 2U);
    EXPECT_EQ(list.stops[item.firstStop].location, 0.25F);
    EXPECT_EQ(list.stops[item.firstStop].colour, (Rgba{1.0F, 1.0F, 1.0F, 1.0F}));
    // Premultiplied: fading white is nothing at all at its end, not grey.
    EXPECT_EQ(list.stops[item.firstStop + 1].colour, Rgba{});
}

TEST(DisplayList, AGradientWithoutStopsIsNotDrawn) {
    EXPECT_TRUE(shown(*layer<GradientLayer>({0.0, 0.0, 10.0, 10.0})).items.empty());
}

TEST(DisplayList, OpacityMultipliesTheWholeSubtree) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto child = layer({0.0, 0.0, 10.0, 10.0}, Qt::green);
    root->addSublayer(child);
    root->setOpacity(0.5);
    child->setOpacity(0.5);
    const DisplayList list = shown(*root, kWindow, 0.8);
    EXPECT_FLOAT_EQ(list.items.at(0).opacity, 0.4F);
    EXPECT_FLOAT_EQ(list.items.at(1).opacity, 0.2F);
}

TEST(DisplayList, WhatIsFullyTransparentIsLeftOutWithAllBelowIt) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->addSublayer(layer({0.0, 0.0, 10.0, 10.0}, Qt::green));
    root->setOpacity(0.0);
    EXPECT_TRUE(shown(*root).items.empty());
    root->setOpacity(1.0);
    root->setBackgroundColor(QColor(1, 2, 3, 0));
    EXPECT_EQ(shown(*root).items.size(), 1U);
}

TEST(DisplayList, MasksToBoundsClipsSublayersAndNotTheLayerItself) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto child = layer({90.0, 90.0, 40.0, 40.0}, Qt::green);
    const auto inner = layer({0.0, 0.0, 60.0, 5.0}, Qt::blue);
    child->addSublayer(inner);
    root->addSublayer(child);
    EXPECT_EQ(shown(*root).items.at(1).clip, kWindow);
    root->setMasksToBounds(true);
    child->setMasksToBounds(true);
    const DisplayList list = shown(*root);
    EXPECT_EQ(list.items.at(0).clip, kWindow);
    EXPECT_EQ(list.items.at(1).clip, QRectF(0.0, 0.0, 100.0, 100.0));
    EXPECT_EQ(list.items.at(2).clip, QRectF(90.0, 90.0, 10.0, 10.0));
    EXPECT_EQ(list.items.at(2).rect, QRectF(90.0, 90.0, 60.0, 5.0));
}

TEST(DisplayList, WhatLiesOutsideItsClipIsLeftOut) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0});
    root->setMasksToBounds(true);
    root->addSublayer(layer({100.0, 0.0, 10.0, 10.0}, Qt::green));
    root->addSublayer(layer({-10.0, 0.0, 10.0, 10.0}, Qt::green));
    root->addSublayer(layer({-10.0, 0.0, 10.5, 10.0}, Qt::blue));
    const DisplayList list = shown(*root);
    ASSERT_EQ(list.items.size(), 1U);
    EXPECT_EQ(list.items[0].colour, Rgba::from(Qt::blue));
}

TEST(DisplayList, WhatStandsStillMayBeLeftOutButItsAnimationIsStillAwaited) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0});
    const auto drop = layer({0.0, 2000.0, 10.0, 10.0}, Qt::green);
    root->addSublayer(drop);
    drop->addAnimation("fall",
                       KeyframeAnimation{.keyPath = KeyPath::PositionY,
                                         .values = {2000.0, 50.0},
                                         .calculationMode = CalculationMode::Discrete,
                                         .timing = {.duration = 2.0}},
                       5.0);
    DisplayList list;
    DisplayListBuilder(list, 5.0).add(*root, {}, kWindow);
    EXPECT_TRUE(list.items.empty());
    EXPECT_DOUBLE_EQ(list.nextChange, 6.0);
    DisplayListBuilder(list, list.nextChange).add(*root, {}, kWindow);
    EXPECT_EQ(list.items.size(), 1U);
}

TEST(DisplayList, TreesLieOneOverTheOther) {
    const auto below = layer({0.0, 0.0, 10.0, 10.0}, Qt::red);
    const auto above = layer({0.0, 0.0, 10.0, 10.0}, Qt::green);
    below->addSublayer(layer({0.0, 0.0, 5.0, 5.0}, Qt::blue));
    DisplayList list;
    DisplayListBuilder builder(list, 0.0);
    builder.add(*below, {}, kWindow);
    builder.add(*above, {}, kWindow);
    ASSERT_EQ(list.items.size(), 3U);
    EXPECT_EQ(list.items[2].colour, Rgba::from(Qt::green));
    EXPECT_GT(list.items[2].order, list.items[1].order);
}

TEST(DisplayList, TheStructureTellsWhichLayersItWasMadeOf) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto child = layer({0.0, 0.0, 10.0, 10.0}, Qt::green);
    const auto bare = shown(*root).structure;
    root->addSublayer(child);
    const auto with = shown(*root).structure;
    EXPECT_NE(with, bare);
    child->setFrame({50.0, 0.0, 10.0, 10.0});
    child->setOpacity(0.0);
    EXPECT_EQ(shown(*root).structure, with);
    child->setMask(layer({0.0, 0.0, 5.0, 5.0}, Qt::white));
    EXPECT_NE(shown(*root).structure, with);
}

TEST(DisplayList, OrderFollowsTheTreeAfterALayerLeftAnother) {
    const auto root = layer({0.0, 0.0, 100.0, 100.0}, Qt::red);
    const auto other = layer({0.0, 0.0, 100.0, 100.0}, Qt::green);
    const auto before = shown(*other).structure;
    root->addSublayer(layer({0.0, 0.0, 10.0, 10.0}, Qt::blue));
    root->addSublayer(other);
    other->addSublayer(layer({0.0, 0.0, 10.0, 10.0}, Qt::blue));
    shown(*root);
    other->addSublayer(layer({0.0, 0.0, 10.0, 10.0}, Qt::white));
    other->removeFromSuperlayer();
    const DisplayList list = shown(*other);
    EXPECT_NE(list.structure, before);
    ASSERT_EQ(list.items.size(), 3U);
    for (std::size_t i = 1; i < list.items.size(); ++i)
        EXPECT_GT(list.items[i].order, list.items[i - 1].order);
}

TEST(DisplayList, RefillingItForgetsWhatWasInIt) {
    const auto root = layer<GradientLayer>({0.0, 0.0, 100.0, 100.0}, Qt::red);
    root->setStops({{.location = 0.0, .colour = Qt::red}});
    root->setMask(layer({0.0, 0.0, 5.0, 5.0}, Qt::white));
    DisplayList list;
    for (int i = 0; i < 3; ++i)
        DisplayListBuilder(list, 0.0).add(*root, {}, kWindow);
    EXPECT_EQ(list.items.size(), 2U);
    EXPECT_EQ(list.masks.size(), 1U);
    EXPECT_EQ(list.pieces.size(), 1U);
    EXPECT_EQ(list.stops.size(), 1U);
}

}  // namespace
