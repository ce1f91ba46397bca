// SPDX-License-Identifier: MIT
#include "platform/view/View.h"

#include <gtest/gtest.h>

#include <QPainter>

#include "platform/time/MediaClock.h"
#include "platform/view/FrameBuilder.h"
#include "platform/window/Window.h"
#include "tests/support/WindowSystems.h"

using platform::Frame;
using platform::FrameBuilder;
using platform::KeyEvent;
using platform::MouseEvent;
using platform::View;

namespace {

std::shared_ptr<View> makeView(double x, double y, double width, double height) {
    return std::make_shared<View>(QRectF(x, y, width, height));
}

// A frame of 100 by 80 points at scale 2.
struct Built {
    Frame frame{.grid = {.scale = 2.0, .size = {200, 160}}, .background = {}, .passes = {}};
    double next = 0.0;

    explicit Built(View& view, double time = 0.0) {
        FrameBuilder builder(frame, time);
        builder.add(view);
        next = builder.nextChange();
    }
    [[nodiscard]] const std::vector<platform::DisplayItem>& items() const {
        return frame.passes.at(0).layers.items;
    }
};

TEST(View, AddingTakesItOutOfWhereItWas) {
    View first(QRectF(0, 0, 10, 10)), second(QRectF(0, 0, 10, 10));
    const auto child = makeView(0, 0, 5, 5);
    first.addSubview(child);
    second.addSubview(child);
    EXPECT_TRUE(first.subviews().empty());
    ASSERT_EQ(second.subviews().size(), 1U);
    EXPECT_EQ(child->superview(), &second);
    child->removeFromSuperview();
    EXPECT_EQ(child->superview(), nullptr);
    EXPECT_TRUE(second.subviews().empty());
    child->removeFromSuperview();
}

TEST(View, RemovingTheLastHeldOneIsSafe) {
    View parent(QRectF(0, 0, 10, 10));
    parent.addSubview(makeView(0, 0, 5, 5));
    parent.subviews().front()->removeFromSuperview();
    EXPECT_TRUE(parent.subviews().empty());
}

TEST(View, SubviewOutlivesItsSuperview) {
    const auto child = makeView(0, 0, 5, 5);
    {
        View parent(QRectF(0, 0, 10, 10));
        parent.addSubview(child);
    }
    EXPECT_EQ(child->superview(), nullptr);
}

TEST(ViewDeathTest, CycleIsAProgrammingError) {
    const auto outer = makeView(0, 0, 10, 10);
    const auto inner = makeView(0, 0, 10, 10);
    outer->addSubview(inner);
    EXPECT_DEATH(inner->addSubview(outer), "");
    EXPECT_DEATH(outer->addSubview(outer), "");
}

TEST(View, ResizesSubviewsByTheirMaskAndTheirsInTurn) {
    View root(QRectF(0, 0, 100, 80));
    const auto both = makeView(10, 20, 50, 40);
    const auto width = makeView(0, 0, 30, 10);
    const auto height = makeView(0, 0, 30, 10);
    const auto fixed = makeView(5, 5, 6, 7);
    both->setAutoresizingMask(18);
    width->setAutoresizingMask(2);
    height->setAutoresizingMask(16);
    const auto nested = makeView(0, 0, 50, 40);
    nested->setAutoresizingMask(View::WidthSizable | View::HeightSizable);
    both->addSubview(nested);
    for (const auto& view : {both, width, height, fixed})
        root.addSubview(view);
    root.setFrame({7, 7, 140, 70});
    EXPECT_EQ(both->frame(), QRectF(10, 20, 90, 30));
    EXPECT_EQ(nested->frame(), QRectF(0, 0, 90, 30));
    EXPECT_EQ(width->frame(), QRectF(0, 0, 70, 10));
    EXPECT_EQ(height->frame(), QRectF(0, 0, 30, 0));
    EXPECT_EQ(fixed->frame(), QRectF(5, 5, 6, 7));
}

TEST(View, BackingLayerFillsTheBoundsAndFollowsThem) {
    View view(QRectF(30, 40, 100, 80));
    EXPECT_EQ(view.layer(), nullptr);
    view.setWantsLayer(true);
    EXPECT_EQ(view.layer()->frame(), QRectF(0, 0, 100, 80));
    view.setFrame({0, 0, 50, 60});
    EXPECT_EQ(view.layer()->frame(), QRectF(0, 0, 50, 60));
    view.setWantsLayer(false);
    EXPECT_EQ(view.layer(), nullptr);
}

TEST(View, LayerOutlivesItsView) {
    std::shared_ptr<platform::Layer> layer;
    {
        View view(QRectF(0, 0, 10, 10));
        view.setWantsLayer(true);
        layer = view.layer();
    }
    layer->setOpacity(0.5);
    EXPECT_EQ(layer->opacity(), 0.5);
}

TEST(View, FrameHoldsAViewsLayersThenItsSubviewsInOrder) {
    View root(QRectF(0, 0, 100, 80));
    root.setWantsLayer(true);
    root.layer()->setBackgroundColor(Qt::black);
    const auto low = makeView(10, 20, 30, 40), high = makeView(0, 0, 20, 10);
    low->addSubview(high);
    const auto last = makeView(50, 60, 10, 10);
    root.addSubview(low);
    root.addSubview(last);
    for (const auto& view : {low, high, last}) {
        view->setWantsLayer(true);
        view->layer()->setBackgroundColor(Qt::green);
    }
    const auto late = std::make_shared<platform::Layer>();
    late->setFrame({1, 2, 3, 4});
    late->setBackgroundColor(Qt::red);
    root.layer()->addSublayer(late);
    const Built built(root);
    ASSERT_EQ(built.items().size(), 5U);
    EXPECT_EQ(built.items()[0].rect, QRectF(0, 0, 100, 80));
    EXPECT_EQ(built.items()[1].rect, QRectF(1, 2, 3, 4));
    EXPECT_EQ(built.items()[2].rect, QRectF(10, 20, 30, 40));
    EXPECT_EQ(built.items()[3].rect, QRectF(10, 20, 20, 10));
    EXPECT_EQ(built.items()[4].rect, QRectF(50, 60, 10, 10));
}

struct Painted : View {
    using View::View;
    int times = 0;
    QRectF last;
    void draw(QPainter& painter, const QRectF& dirty) override {
        ++times;
        last = dirty;
        // The lower left quarter.
        painter.fillRect(QRectF(0, 0, dirty.width() / 2, dirty.height() / 2), Qt::red);
    }
};

TEST(View, DrawsOnlyAfterBeingMarkedAndKeepsThePainting) {
    Painted view(QRectF(0, 0, 100, 80));
    EXPECT_TRUE(Built(view).items().empty());
    EXPECT_EQ(view.times, 0);
    view.setNeedsDisplay();
    const Built built(view);
    EXPECT_EQ(Built(view).items().size(), 1U);
    EXPECT_EQ(view.times, 1);
    EXPECT_EQ(view.last, QRectF(0, 0, 100, 80));
    ASSERT_EQ(built.items().size(), 1U);
    const QImage image = built.items()[0].image;
    EXPECT_EQ(image.size(), QSize(200, 160));
    EXPECT_EQ(image.pixelColor(0, 159), QColor(Qt::red));
    EXPECT_EQ(image.pixelColor(0, 0).alpha(), 0);
    view.setFrame({0, 0, 50, 80});
    EXPECT_EQ(Built(view).items().at(0).image.size(), QSize(100, 160));
    EXPECT_EQ(view.times, 2);
}

struct Handler : View {
    using View::View;
    std::vector<QString> got;
    bool acceptsFirstResponder() const override { return true; }
    void keyDown(const KeyEvent&) override { got.push_back(QStringLiteral("key")); }
    void mouseDown(const MouseEvent&) override { got.push_back(QStringLiteral("left")); }
    void rightMouseDown(const MouseEvent&) override { got.push_back(QStringLiteral("right")); }
    void otherMouseDown(const MouseEvent&) override { got.push_back(QStringLiteral("other")); }
    void mouseMoved(const MouseEvent&) override { got.push_back(QStringLiteral("moved")); }
};

TEST(View, InputThatAViewDoesNotHandleGoesToItsSuperview) {
    Handler outer(QRectF(0, 0, 100, 80));
    const auto inner = makeView(0, 0, 10, 10);
    outer.addSubview(inner);
    inner->keyDown({});
    inner->mouseDown({});
    inner->rightMouseDown({});
    inner->otherMouseDown({});
    inner->mouseMoved({});
    EXPECT_EQ(outer.got, (std::vector<QString>{QStringLiteral("key"), QStringLiteral("left"),
                                               QStringLiteral("right"), QStringLiteral("other"),
                                               QStringLiteral("moved")}));
    makeView(0, 0, 1, 1)->keyDown({});
}

TEST(View, HitTestFindsTheTopmostOne) {
    const auto root = makeView(10, 10, 100, 80);
    const auto low = makeView(0, 0, 50, 50), high = makeView(20, 20, 50, 50);
    root->addSubview(low);
    root->addSubview(high);
    EXPECT_EQ(root->hitTest({15, 15}), low.get());
    EXPECT_EQ(root->hitTest({35, 35}), high.get());
    EXPECT_EQ(root->hitTest({105, 85}), root.get());
    EXPECT_EQ(root->hitTest({5, 5}), nullptr);
}

// A window that is nowhere shown: the off-screen platform has no X.
struct ViewInWindow : testing::Test {
    platform::ManualClock clock;
    platform::WindowServer server{clock, {.drawer = {}, .system = withoutSystem(clock)}};
    platform::Window window{server, {.frame = {0, 0, 100, 80}}};
};

TEST_F(ViewInWindow, KnowsItsWindowWhileItIsInOne) {
    const auto root = makeView(0, 0, 10, 10);
    const auto child = makeView(0, 0, 5, 5);
    root->addSubview(child);
    EXPECT_EQ(child->window(), nullptr);
    window.setContentView(root);
    EXPECT_EQ(child->window(), &window);
    EXPECT_EQ(root->frame(), QRectF(0, 0, 100, 80));
    child->removeFromSuperview();
    EXPECT_EQ(child->window(), nullptr);
}

TEST_F(ViewInWindow, FirstResponderMustAcceptAndLeavesWithItsView) {
    const auto root = makeView(0, 0, 100, 80);
    const auto handler = std::make_shared<Handler>(QRectF(0, 0, 10, 10));
    root->addSubview(handler);
    EXPECT_FALSE(window.makeFirstResponder(handler.get()));
    window.setContentView(root);
    EXPECT_FALSE(window.makeFirstResponder(root.get()));
    EXPECT_TRUE(window.makeFirstResponder(handler.get()));
    handler->removeFromSuperview();
    EXPECT_EQ(window.firstResponder(), nullptr);
}

TEST_F(ViewInWindow, ViewsOutliveTheirWindow) {
    const auto root = makeView(0, 0, 10, 10);
    {
        platform::Window other(server, {.frame = {0, 0, 10, 10}});
        other.setContentView(root);
    }
    EXPECT_EQ(root->window(), nullptr);
    root->setNeedsDisplay();
}

}  // namespace
