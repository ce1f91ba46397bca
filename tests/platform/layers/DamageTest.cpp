// SPDX-License-Identifier: MIT
#include "platform/layers/Damage.h"

#include <gtest/gtest.h>

#include <numeric>

#include "tests/support/FallingColumns.h"

using namespace platform;
using testing::Test;

namespace {

QRect unite(const std::vector<QRect>& rects) {
    return std::accumulate(rects.begin(), rects.end(), QRect(),
                           [](const QRect& a, const QRect& b) { return a | b; });
}

// Four columns of ten rows, 20 points wide, rows of 10; every drop has a trail
// of three rows and falls a row a second, the first one first.
class Damage : public Test {
  protected:
    Damage() : columns({.size = {80.0, 100.0}, .columnWidth = 20, .rowHeight = 10}) {
        columns.addDrop(0, {.length = 3, .rowSeconds = 1.0, .begin = 100.0, .offset = 4.2});
        columns.addDrop(2, {.length = 3, .rowSeconds = 1.0, .begin = 100.0, .offset = 5.6});
        before = columns.shown(100.0);
    }

    std::vector<QRect> since(const DisplayList& after, double scale = 1.0) {
        std::vector<QRect> rects{QRect(1, 2, 3, 4)};
        findDamage(before, after, {.scale = scale, .size = (columns.size() * scale).toSize()},
                   rects);
        return rects;
    }

    FallingColumns columns;
    DisplayList before;
};

TEST_F(Damage, NothingChangedIsEmpty) {
    EXPECT_TRUE(since(columns.shown(100.0)).empty());
    EXPECT_TRUE(since(columns.shown(100.3)).empty());
}

TEST_F(Damage, OneDropMovedIsItsColumnOnly) {
    // The second drop steps at 100.4, the first at 100.8.
    EXPECT_DOUBLE_EQ(before.nextChange, 100.4);
    const std::vector<QRect> rects = since(columns.shown(100.5));
    ASSERT_FALSE(rects.empty());
    const QRect hit = unite(rects);
    EXPECT_EQ(hit.left(), 40);
    EXPECT_EQ(hit.width(), 20);
    // The head stood on row 5, with two rows of its trail above, and steps on to row 6.
    EXPECT_EQ(hit, QRect(40, 20, 20, 40));
}

TEST_F(Damage, TwoDropsMovedAreTheirTwoColumns) {
    for (const QRect& rect : since(columns.shown(100.9))) {
        EXPECT_EQ(rect.width(), 20);
        EXPECT_TRUE(rect.left() == 0 || rect.left() == 40);
    }
}

TEST_F(Damage, FollowsTheScale) {
    EXPECT_EQ(unite(since(columns.shown(100.5), 2.0)), QRect(80, 40, 40, 80));
}

TEST_F(Damage, ContentsSwappedAreOnlyWhatTheirMaskUncovers) {
    columns.swapContents(0);
    const std::vector<QRect> rects = since(columns.shown(100.0));
    ASSERT_FALSE(rects.empty());
    EXPECT_EQ(unite(rects), QRect(0, 10, 20, 30));
}

TEST_F(Damage, ContentsSwappedWithoutDropsAreNothing) {
    columns.swapContents(1);
    EXPECT_TRUE(since(columns.shown(100.0)).empty());
}

TEST_F(Damage, AChangedStructureIsEverything) {
    columns.root().addSublayer(std::make_shared<Layer>());
    EXPECT_EQ(since(columns.shown(100.0)), std::vector{QRect(0, 0, 80, 100)});
}

TEST_F(Damage, ADropThatLeavesIsWhereItWas) {
    columns.root().sublayers()[4]->setOpacity(0.0);
    EXPECT_EQ(unite(since(columns.shown(100.0))), QRect(40, 20, 20, 30));
}

constexpr QRectF kPicture(0.0, 0.0, 100.0, 100.0);

class DamageOfALayer : public Test {
  protected:
    DamageOfALayer() {
        root.setFrame(kPicture);
        root.addSublayer(layer);
        layer->setFrame({10.0, 10.0, 20.0, 20.0});
        layer->setBackgroundColor(Qt::red);
    }

    template <typename Change>
    std::vector<QRect> after(Change change) {
        DisplayList old, now;
        DisplayListBuilder(old, 0.0).add(root, {}, kPicture);
        change();
        DisplayListBuilder(now, 0.0).add(root, {}, kPicture);
        std::vector<QRect> rects;
        findDamage(old, now, {.scale = 1.0, .size = {100, 100}}, rects);
        return rects;
    }

    Layer root;
    std::shared_ptr<GradientLayer> layer = std::make_shared<GradientLayer>();
};

TEST_F(DamageOfALayer, MovedIsWhereItWasAndWhereItIs) {
    const auto rects = after([&] { layer->setFrame({60.0, 60.0, 20.0, 20.0}); });
    EXPECT_EQ(rects, (std::vector{QRect(10, 70, 20, 20), QRect(60, 20, 20, 20)}));
}

TEST_F(DamageOfALayer, HiddenAndShownAreItsPlace) {
    const std::vector place{QRect(10, 70, 20, 20)};
    EXPECT_EQ(after([&] { layer->setOpacity(0.0); }), place);
    EXPECT_EQ(after([&] { layer->setOpacity(0.5); }), place);
    EXPECT_EQ(after([&] { layer->setOpacity(0.25); }), place);
}

TEST_F(DamageOfALayer, EveryChangeOfItsLookIsItsPlace) {
    const std::vector place{QRect(10, 70, 20, 20)};
    EXPECT_EQ(after([&] { layer->setBackgroundColor(Qt::green); }), place);
    EXPECT_EQ(after([&] { layer->setStops({{.location = 0.0, .colour = Qt::blue}}); }), place);
    EXPECT_EQ(after([&] { layer->setStops({{.location = 0.5, .colour = Qt::blue}}); }), place);
    EXPECT_EQ(after([&] { layer->setAxis({0.0, 0.0}, {1.0, 0.0}); }), place);
    QImage image(2, 2, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    EXPECT_EQ(after([&] { layer->setContents(image); }), place);
    EXPECT_EQ(after([&] { layer->setBackgroundColor({}); }), place);
}

TEST_F(DamageOfALayer, StaysWithinThePictureAndTheClip) {
    EXPECT_TRUE(after([&] { layer->setPosition({20.0, 20.0}); }).empty());
    root.setMasksToBounds(true);
    const auto rects = after([&] { layer->setPosition({100.0, 50.0}); });
    EXPECT_EQ(rects, (std::vector{QRect(10, 70, 20, 20), QRect(90, 40, 10, 20)}));
}

TEST_F(DamageOfALayer, ClippedOtherwiseIsItsPlace) {
    // Ten points on each side of the picture lie outside these bounds.
    root.setBounds({0.0, 0.0, 80.0, 100.0});
    layer->setPosition({75.0, 50.0});
    EXPECT_EQ(after([&] { root.setMasksToBounds(true); }), (std::vector{QRect(75, 40, 20, 20)}));
}

TEST_F(DamageOfALayer, AChangedMaskIsNoMoreThanWhatItUncovers) {
    const auto mask = std::make_shared<Layer>();
    const auto piece = std::make_shared<Layer>();
    mask->setFrame({0.0, 0.0, 20.0, 20.0});
    mask->addSublayer(piece);
    piece->setBackgroundColor(Qt::white);
    piece->setFrame({0.0, 0.0, 20.0, 4.0});
    layer->setMask(mask);
    EXPECT_EQ(after([&] {
                  piece->setFrame({0.0, 6.0, 20.0, 4.0});
              }),
              (std::vector{QRect(10, 86, 20, 4), QRect(10, 80, 20, 4)}));
}

}  // namespace
