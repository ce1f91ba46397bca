// SPDX-License-Identifier: MIT
// The name of a window on the desktop, and a new name while the window is shown.
#include "tests/platform/window/wayland/WaylandFixture.h"

namespace platform::wayland {
namespace {

constexpr Rgba kGreen{0.0F, 1.0F, 0.0F, 1.0F};

struct TitleTest : testing::Test {
    WaylandFixture f;
    TestWindow window{f.system,
                      {.window = {.frame = {10, 10, 300, 200},
                                  .style = WindowStyle::Titled,
                                  .title = QStringLiteral("eerst")}}};

    QByteArray shownTitle() {
        f.settle();
        window.paintAll(kGreen);
        f.settle();
        return QByteArray::fromStdString(f.only().title);
    }
};

TEST_F(TitleTest, ANewTitleReachesAShownWindowAtOnce) {
    window.native->show();
    EXPECT_EQ(shownTitle(), "eerst");
    const int commits = f.commits();
    window.native->setTitle(QStringLiteral("bol – één"));
    f.settle();
    EXPECT_EQ(f.only().title, "bol – één");
    EXPECT_EQ(f.commits(), commits);
}

TEST_F(TitleTest, AHiddenWindowIsShownWithItsNewTitle) {
    window.native->setTitle(QStringLiteral("later"));
    window.native->show();
    EXPECT_EQ(shownTitle(), "later");
    window.native->hide();
    f.settle();
    window.native->setTitle(QStringLiteral("nog later"));
    window.native->show();
    EXPECT_EQ(shownTitle(), "nog later");
}

TEST_F(TitleTest, AnOverlayHasNone) {
    TestWindow overlay(f.system, saver());
    overlay.native->show();
    f.settle();
    overlay.native->setTitle(QStringLiteral("regen"));
    f.settle();
    EXPECT_EQ(f.compositor.count("xdg_toplevel", "set_title"), 0);
    EXPECT_TRUE(overlay.native->isSeen());
}

}  // namespace
}  // namespace platform::wayland
