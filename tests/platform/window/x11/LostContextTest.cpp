// SPDX-License-Identifier: MIT
// A GPU that is reset while windows are drawn, as told in the driver's place.
#include <gtest/gtest.h>
#include <unistd.h>

#include <atomic>
#include <tuple>

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
    // It is reset once, as told at the question that comes after this many more.
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
    explicit ColourWindow(DrawerChoice drawer) : choice(drawer) {}

    const DrawerChoice choice;
    const Xvfb x;
    const xcb_window_t id = x.makeWindow({});
    Driver driver;
    platform::SystemClock clock;
    platform::WindowServer server{
        clock, {.drawer = choice, .system = systemOn(clock, x.display()), .resetStatus = [this] {
                    return driver.answer();
                }}};
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

std::string nameOf(DrawerChoice choice) {
    return choice == DrawerChoice::Cpu ? "InMemory" : "InTheWindow";
}

class LostContext : public testing::TestWithParam<DrawerChoice>, protected ColourWindow {
  protected:
    LostContext() : ColourWindow(GetParam()) {}
    void SetUp() override { begin(); }
};

INSTANTIATE_TEST_SUITE_P(Drawer, LostContext,
                         testing::Values(DrawerChoice::Cpu, DrawerChoice::OpenGl),
                         [](const auto& of) { return nameOf(of.param); });

// Told at one of the questions that are asked in the course of a frame or two.
class ContextLostAt : public testing::TestWithParam<std::tuple<DrawerChoice, int>>,
                      protected ColourWindow {
  protected:
    ContextLostAt() : ColourWindow(std::get<0>(GetParam())) {}
    void SetUp() override { begin(); }
};

INSTANTIATE_TEST_SUITE_P(Question, ContextLostAt,
                         testing::Combine(testing::Values(DrawerChoice::Cpu, DrawerChoice::OpenGl),
                                          testing::Range(0, 6)),
                         [](const auto& of) {
                             return nameOf(std::get<0>(of.param)) +
                                    std::to_string(std::get<1>(of.param));
                         });

TEST_P(ContextLostAt, IsMadeAnewAndTheSceneGoesOn) {
    const auto thread = driver.asker();
    driver.resetIn(std::get<1>(GetParam()));
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

TEST_P(LostContext, ThatIsLostAgainAtOnceFailsTheSceneOnce) {
    driver.resetAlways();
    EXPECT_TRUE(until([&] { return failures > 0; }));
    const auto frames = window.statistics().frames;
    EXPECT_TRUE(until([&] { return window.statistics().frames > frames + 3; }));
    EXPECT_EQ(failures, 1);
}

TEST_P(LostContext, ThatStaysLostLeavesThePictureToTheProcessor) {
    driver.resetAlways();
    ASSERT_TRUE(until([&] { return failures > 0; }));
    window.setContentView(makePicture(window.frame().size()));
    EXPECT_TRUE(until([&] { return x.pixel(id, 60, 120) == 0x00ff00U; }));
    EXPECT_TRUE(until([&] { return window.statistics().drawer == QStringLiteral("cpu"); }));
}

}  // namespace
