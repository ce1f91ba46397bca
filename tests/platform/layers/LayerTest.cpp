// SPDX-License-Identifier: MIT
#include "platform/layers/Layer.h"

#include <gtest/gtest.h>

using namespace platform;

namespace {

TEST(Layer, PositionIsTheCentreOfTheFrame) {
    Layer layer;
    layer.setFrame({10.0, 20.0, 30.0, 40.0});
    EXPECT_EQ(layer.position(), QPointF(25.0, 40.0));
    EXPECT_EQ(layer.bounds(), QRectF(0.0, 0.0, 30.0, 40.0));
    layer.setPosition({0.0, 0.0});
    EXPECT_EQ(layer.frame(), QRectF(-15.0, -20.0, 30.0, 40.0));
}

TEST(Layer, BoundsGrowAboutThePosition) {
    Layer layer;
    layer.setFrame({0.0, 0.0, 10.0, 10.0});
    layer.setBounds({3.0, 4.0, 20.0, 30.0});
    EXPECT_EQ(layer.frame(), QRectF(-5.0, -10.0, 20.0, 30.0));
    EXPECT_EQ(layer.position(), QPointF(5.0, 5.0));
}

TEST(Layer, AFrameKeepsTheOriginOfTheBounds) {
    Layer layer;
    layer.setBounds({3.0, 4.0, 1.0, 1.0});
    layer.setFrame({0.0, 0.0, 10.0, 10.0});
    EXPECT_EQ(layer.bounds(), QRectF(3.0, 4.0, 10.0, 10.0));
}

TEST(Layer, OpacityStaysWithinNothingAndWhole) {
    Layer layer;
    EXPECT_EQ(layer.opacity(), 1.0);
    layer.setOpacity(1.5);
    EXPECT_EQ(layer.opacity(), 1.0);
    layer.setOpacity(-0.5);
    EXPECT_EQ(layer.opacity(), 0.0);
}

TEST(Layer, ASublayerLeavesWhereItWas) {
    Layer a, b;
    const auto child = std::make_shared<Layer>();
    a.addSublayer(child);
    EXPECT_EQ(child->superlayer(), &a);
    b.addSublayer(child);
    EXPECT_TRUE(a.sublayers().empty());
    EXPECT_EQ(child->superlayer(), &b);
    b.setMask(child);
    EXPECT_TRUE(b.sublayers().empty());
    EXPECT_EQ(b.mask(), child);
    child->removeFromSuperlayer();
    EXPECT_EQ(b.mask(), nullptr);
    EXPECT_EQ(child->superlayer(), nullptr);
}

TEST(Layer, RemovingTheLastHeldDropsIt) {
    Layer parent;
    auto child = std::make_shared<Layer>();
    const std::weak_ptr<Layer> watch = child;
    parent.addSublayer(child);
    Layer* const raw = child.get();
    child.reset();
    EXPECT_FALSE(watch.expired());
    raw->removeFromSuperlayer();
    EXPECT_TRUE(watch.expired());
}

TEST(Layer, OutlivesItsSuperlayer) {
    const auto child = std::make_shared<Layer>();
    const auto mask = std::make_shared<Layer>();
    {
        Layer parent;
        parent.addSublayer(child);
        parent.setMask(mask);
    }
    EXPECT_EQ(child->superlayer(), nullptr);
    EXPECT_EQ(mask->superlayer(), nullptr);
}

TEST(LayerDeathTest, ACycleIsAProgrammingError) {
    const auto a = std::make_shared<Layer>();
    const auto b = std::make_shared<Layer>();
    a->addSublayer(b);
    EXPECT_DEATH(b->addSublayer(a), "");
    EXPECT_DEATH(a->addSublayer(a), "");
}

class LayerChanges : public testing::Test {
  protected:
    LayerChanges() {
        root.addSublayer(child);
        root.onChange([this] { ++changes; });
    }

    int changes = 0;
    Layer root;
    std::shared_ptr<GradientLayer> child = std::make_shared<GradientLayer>();
};

TEST_F(LayerChanges, EverySetterIsToldToTheRootAtOnce) {
    QImage picture(2, 2, QImage::Format_ARGB32_Premultiplied);
    const std::vector<std::function<void()>> setters = {
        [&] {
            child->setFrame({1.0, 2.0, 3.0, 4.0});
        },
        [&] {
            child->setBounds({0.0, 0.0, 5.0, 5.0});
        },
        [&] {
            child->setPosition({9.0, 9.0});
        },
        [&] { child->setOpacity(0.5); },
        [&] { child->setBackgroundColor(Qt::red); },
        [&] { child->setContents(picture); },
        [&] { child->setContentsScale(2.0); },
        [&] { child->setMasksToBounds(true); },
        [&] { child->setTime({.beginTime = 1.0}); },
        [&] { child->setStops({{.location = 0.0, .colour = Qt::red}}); },
        [&] {
            child->setAxis({0.0, 0.0}, {1.0, 0.0});
        },
    };
    for (std::size_t i = 0; i < setters.size(); ++i) {
        changes = 0;
        setters[i]();
        EXPECT_EQ(changes, 1) << "setter " << i;
        setters[i]();
        EXPECT_EQ(changes, 1) << "an equal value is no change, setter " << i;
    }
}

TEST_F(LayerChanges, AnimationsAndTheTreeAreToldToo) {
    child->addAnimation("a", BasicAnimation{.to = 1.0, .timing = {.duration = 1.0}}, 0.0);
    EXPECT_EQ(changes, 1);
    child->removeAnimation("b");
    EXPECT_EQ(changes, 1);
    child->removeAnimation("a");
    EXPECT_EQ(changes, 2);
    const auto mask = std::make_shared<Layer>();
    child->setMask(mask);
    EXPECT_EQ(changes, 3);
    child->setMask(mask);
    EXPECT_EQ(changes, 3);
    child->removeFromSuperlayer();
    EXPECT_EQ(changes, 4);
    child->setOpacity(0.2);
    EXPECT_EQ(changes, 4);
}

}  // namespace
