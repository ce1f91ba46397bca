// SPDX-License-Identifier: MIT
// A GPU that is reset while windows are drawn, as told in the driver's place.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>

#include "platform/view/SceneView.h"
#include "tests/platform/window/x11/Client.h"
#include "tests/support/KeepDriver.h"
#include "tests/support/WindowSystems.h"

using platform::DrawerChoice;
using platform::SceneView;

namespace {

constexpr unsigned kUnknownReset = 0x8255;  // GL_UNKNOWN_CONTEXT_RESET
constexpr std::uint32_t kRed = 0xff0000;
constexpr std::uint32_t kBlue = 0x0000ff;

// Asked on the render thread whether the context was reset.
class Driver {
  public:
    static constexpr int kNever = -1, kAlways = -2;

    unsigned answer() {
        asker_ = ::gettid();
        ++questions_;
        if (in_ == kAlways) return kUnknownReset;
        return in_ >= 0 && in_-- == 0 ? kUnknownReset : 0U;
    }
    // The context is reset once, as told at the question that comes after this many more.
    void resetIn(int questions) { in_ = questions; }
    void resetAlways() { in_ = kAlways; }
    [[nodiscard]] bool wasReset() const { return in_ == kNever; }
    [[nodiscard]] pid_t asker() const { return asker_; }
    [[nodiscard]] int questions() const { return questions_; }

  private:
    std::atomic<int> in_{kNever}, questions_{0};
    std::atomic<pid_t> asker_{0};
};

// A window full of one scene that is nothing but a colour.
struct ColourWindow {
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Driver driver;
    platform::SystemClock clock;
    platform::WindowServer server{clock,
                                  {.drawer = DrawerChoice::OpenGl,
                                   .system = systemOn(clock, x.display()),
                                   .resetStatus = [this] { return driver.answer(); }}};
    platform::Window window{server, hostRef(id)};
    std::shared_ptr<platform::Scene> scene = std::make_shared<platform::Scene>();
    int failures = 0;

    void begin() {
        auto eye = std::make_shared<platform::Node>();
        eye->setCamera(platform::Camera{});
        scene->root().addChild(eye);
        scene->setBackground(Qt::red);
        auto view =
            std::make_shared<SceneView>(QRectF(QPointF(0, 0), window.frame().size()), clock);
        view->setScene(scene);
        view->setPlaying(true);
        view->onFailure([this] { ++failures; });
        window.setContentView(view);
        ASSERT_TRUE(until([&] { return x.pixel(id, 50, 50) == kRed; }));
        // The failure is reported after the picture has been shown.
        ASSERT_TRUE(
            until([&] { return window.statistics().drawer.contains(QStringLiteral("llvmpipe")); }));
    }
};

class LostContext : public testing::Test, protected ColourWindow {
  protected:
    void SetUp() override { begin(); }
};

// The loss is reported at one of the questions within a frame or two.
class ContextLostAt : public testing::TestWithParam<int>, protected ColourWindow {
  protected:
    void SetUp() override { begin(); }
};

INSTANTIATE_TEST_SUITE_P(Question, ContextLostAt, testing::Range(0, 6));

TEST_P(ContextLostAt, IsMadeAnewAndTheSceneGoesOn) {
    const auto thread = driver.asker();
    driver.resetIn(GetParam());
    ASSERT_TRUE(until([&] { return driver.wasReset(); }));
    scene->setBackground(Qt::blue);
    EXPECT_TRUE(until([&] { return x.pixel(id, 50, 50) == kBlue; }));
    const int asked = driver.questions();
    EXPECT_TRUE(until([&] { return driver.questions() > asked; }));
    EXPECT_TRUE(window.statistics().drawer.contains(QStringLiteral("llvmpipe")));
    // Another way of drawing would have been given another thread.
    EXPECT_EQ(driver.asker(), thread);
    EXPECT_EQ(failures, 0);
}

TEST_F(LostContext, ThatIsLostAgainAtOnceLeavesTheSceneToTheProcessor) {
    driver.resetAlways();
    ASSERT_TRUE(until([&] { return window.statistics().drawer == QStringLiteral("cpu"); }));
    scene->setBackground(Qt::blue);
    EXPECT_TRUE(until([&] { return x.pixel(id, 50, 50) == kBlue; }));
    EXPECT_EQ(failures, 0);
}

TEST_F(LostContext, ThatStaysLostLeavesThePictureToTheProcessor) {
    driver.resetAlways();
    ASSERT_TRUE(until([&] { return window.statistics().drawer == QStringLiteral("cpu"); }));
    window.setContentView(makePicture(window.frame().size()));
    EXPECT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
    EXPECT_EQ(window.statistics().drawer, QStringLiteral("cpu"));
}

}  // namespace
