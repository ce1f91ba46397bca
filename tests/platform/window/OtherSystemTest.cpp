// SPDX-License-Identifier: MIT
// Windows on a window system that is none of the real ones and can do little.
#include <gtest/gtest.h>

#include <mutex>
#include <optional>

#include "platform/time/Timer.h"
#include "platform/window/Window.h"
#include "platform/window/WindowSystem.h"
#include "tests/support/Until.h"

using platform::HostRef;
using platform::NativeWindow;
using platform::NativeWindowDelegate;
using platform::NativeWindowOptions;
using platform::Surface;
using platform::SystemClock;
using platform::View;
using platform::Window;
using platform::WindowServer;

namespace {

// The pictures of all windows' render threads.
struct Drawn {
    std::mutex mutex;
    std::vector<double> opacities;
    std::vector<QSize> sizes;
    bool bySoftware = true;

    [[nodiscard]] std::size_t frames() {
        const std::lock_guard lock(mutex);
        return sizes.size();
    }
    [[nodiscard]] double lastOpacity() {
        const std::lock_guard lock(mutex);
        return opacities.empty() ? -1.0 : opacities.back();
    }
};

class Paper final : public Surface {
  public:
    explicit Paper(Drawn& drawn) : drawn_(drawn) {}
    Result draw(const platform::Frame& frame, std::span<const QRect>) override {
        const std::lock_guard lock(drawn_.mutex);
        drawn_.opacities.push_back(frame.opacity);
        drawn_.sizes.push_back(frame.grid.size);
        return Result::Drawn;
    }
    Result repair(const platform::Frame&, std::span<const QRect>) override { return Result::Drawn; }
    Result finish() override { return Result::Drawn; }
    [[nodiscard]] const QString& drawer() const override { return name_; }
    [[nodiscard]] bool isSoftware() const override { return drawn_.bySoftware; }

  private:
    Drawn& drawn_;
    const QString name_ = QStringLiteral("paper");
};

// A window of one and a half pixels to the point, which tells nothing by itself.
class PaperWindow final : public NativeWindow {
  public:
    PaperWindow(Drawn& drawn, const NativeWindowOptions& options, NativeWindowDelegate& told)
        : delegate(told), drawn_(drawn), frame_(options.window.frame) {}

    [[nodiscard]] std::int64_t number() const override { return 7; }
    [[nodiscard]] platform::WindowRef reference() const override { return {QStringLiteral("p7")}; }
    [[nodiscard]] bool isDrawable() const override { return true; }
    [[nodiscard]] bool exists() override { return true; }
    [[nodiscard]] QRectF frame() const override { return frame_; }
    void setFrame(const QRectF& frame) override { frame_ = frame; }
    [[nodiscard]] QSizeF size() const override { return frame_.size(); }
    [[nodiscard]] QSize pixelSize() const override { return (frame_.size() * scale()).toSize(); }
    [[nodiscard]] double scale() const override { return 1.5; }
    [[nodiscard]] std::optional<platform::Screen> screen() const override { return std::nullopt; }
    void show() override {
        shown = true;
        delegate.visibilityChanged();
    }
    void raise() override {}
    void hide() override {
        shown = false;
        delegate.visibilityChanged();
    }
    void keepOnTop() override { kept = true; }
    void takeKeyboard() override { keyboard = true; }
    [[nodiscard]] bool hasKeyboard() const override { return keyboard; }
    [[nodiscard]] bool isShown() const override { return shown; }
    [[nodiscard]] bool isSeen() const override { return shown && !covered; }
    void setIgnoresMouse(bool) override {}
    void setTitle(const QString&) override {}
    void setCursorHidden(bool) override {}
    void setOpacity(double) override { ADD_FAILURE() << "the system cannot fade"; }
    [[nodiscard]] SurfaceMaker surfaceMaker(const platform::SurfaceOptions&) override {
        return [&drawn = drawn_](int) { return std::make_unique<Paper>(drawn); };
    }

    NativeWindowDelegate& delegate;
    bool shown = false;
    bool covered = false;
    bool kept = false;
    bool keyboard = false;

  private:
    Drawn& drawn_;
    QRectF frame_;
};

class PaperSystem final : public platform::WindowSystem {
  public:
    [[nodiscard]] platform::Capabilities capabilities() const override { return {}; }
    [[nodiscard]] bool isConnected() const override { return true; }
    void onLost(std::function<void()>) override {}
    void reportLoss() override {}
    [[nodiscard]] std::unique_ptr<NativeWindow> makeWindow(
        const NativeWindowOptions& options, NativeWindowDelegate& delegate) override {
        auto made = std::make_unique<PaperWindow>(drawn, options, delegate);
        last = made.get();
        return made;
    }
    [[nodiscard]] std::unique_ptr<NativeWindow> adopt(const HostRef&,
                                                      NativeWindowDelegate&) override {
        return nullptr;
    }
    [[nodiscard]] platform::NativeWorkspace& workspace() override { std::abort(); }
    [[nodiscard]] platform::OverlaySpaces* overlaySpaces() override { return nullptr; }
    void watch(std::function<void(bool)> displaySlept) override { slept = std::move(displaySlept); }
    void stopWatching() override { slept = {}; }

    Drawn drawn;
    PaperWindow* last = nullptr;
    std::function<void(bool)> slept;
};

struct OtherSystem : testing::Test {
    SystemClock clock;
    std::shared_ptr<PaperSystem> system = std::make_shared<PaperSystem>();
    WindowServer server{clock, {.system = system}};
    Window window{server, {.frame = {0, 0, 100, 60}, .staysOnTop = true}};

    // Another picture, each time.
    void change() {
        window.contentView()->layer()->setOpacity(
            window.contentView()->layer()->opacity() > 0.5 ? 0.4 : 1.0);
    }
    void SetUp() override {
        window.contentView()->setWantsLayer(true);
        window.contentView()->layer()->setBackgroundColor(Qt::green);
    }
    [[nodiscard]] bool waitFor(std::size_t frames) {
        return until([&] { return system->drawn.frames() >= frames; });
    }
    // Whether changes bring no frame, beside a window that has them.
    [[nodiscard]] bool staysStill() {
        const std::size_t before = system->drawn.frames();
        PaperSystem* const papers = system.get();
        PaperWindow* const own = papers->last;
        Window other(server, {.frame = {0, 0, 10, 10}});
        other.contentView()->setWantsLayer(true);
        other.contentView()->layer()->setBackgroundColor(Qt::red);
        other.show();
        papers->last = own;
        for (std::size_t i = 1; i <= 5; ++i) {
            change();
            if (!waitFor(before + i)) return false;
            auto& layer = *other.contentView()->layer();
            layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
        }
        const std::lock_guard lock(papers->drawn.mutex);
        const auto& sizes = papers->drawn.sizes;
        return std::none_of(sizes.begin() + static_cast<std::ptrdiff_t>(before), sizes.end(),
                            [](QSize size) { return size == QSize(150, 90); });
    }
};

// A program that takes a share of a processor, whatever it draws, on a clock moved by hand.
struct BusyProgram {
    platform::ManualClock clock;
    WindowServer server;
    Window window;
    double share = 0.5;
    double cpuSeconds = 0.0;
    int asked = 0;
    std::vector<platform::WorkMeasure> taken;

    explicit BusyProgram(const std::shared_ptr<PaperSystem>& system)
        : server(clock, {.system = system}), window(server, {.frame = {0, 0, 100, 60}}) {
        limit(platform::WorkBudget::Options{.share = 1.0});
        window.contentView()->setWantsLayer(true);
        window.contentView()->layer()->setBackgroundColor(Qt::green);
        window.show();
    }
    void limit(const std::optional<platform::WorkBudget::Options>& options) {
        server.limitWork(options, [this] {
            ++asked;
            return cpuSeconds;
        });
    }
    void passSecond(bool changes = true) {
        auto& layer = *window.contentView()->layer();
        if (changes) layer.setOpacity(layer.opacity() > 0.5 ? 0.4 : 1.0);
        clock.advance(1.0);
        cpuSeconds += share;
        if (taken.empty() || taken.back() != server.measure()) taken.push_back(server.measure());
    }
    void passSeconds(int count) {
        for (int i = 0; i < count; ++i)
            passSecond();
    }
};

TEST_F(OtherSystem, AProgramThatTakesTooMuchDrawsLessAndMoreAgainWhenThereIsRoom) {
    BusyProgram program(system);
    program.share = 3.0;
    ASSERT_TRUE(until([&] {
        program.passSecond();
        return program.server.measure().pace == 2;
    }));
    EXPECT_EQ(program.taken,
              (std::vector<platform::WorkMeasure>(platform::kWorkMeasures.begin(),
                                                  platform::kWorkMeasures.begin() + 5)));
    program.share = 0.1;
    program.passSeconds(60);
    EXPECT_EQ(program.server.measure(), platform::kWorkMeasures[0]);
}

TEST_F(OtherSystem, ALimitThatIsLiftedGivesTheWholePictureBackAndAsksNoMore) {
    BusyProgram program(system);
    program.share = 3.0;
    ASSERT_TRUE(until([&] {
        program.passSecond();
        return program.server.measure() != platform::kWorkMeasures[0];
    }));
    program.limit(std::nullopt);
    EXPECT_EQ(program.server.measure(), platform::kWorkMeasures[0]);
    program.asked = 0;
    program.passSeconds(30);
    EXPECT_EQ(program.server.measure(), platform::kWorkMeasures[0]);
    EXPECT_EQ(program.asked, 0);
}

TEST_F(OtherSystem, ALimitMayBeLiftedWhileANewMeasureIsOnItsWay) {
    BusyProgram program(system);
    program.share = 3.0;
    platform::Timer lift;
    program.server.limitWork(platform::WorkBudget::Options{.share = 1.0}, [&] {
        // Comes before the new measure, which the answer leads to.
        lift = platform::Timer(program.clock, {.interval = 0.0}, [&] {
            if (++program.asked == 4) program.limit(std::nullopt);
        });
        return program.cpuSeconds;
    });
    ASSERT_TRUE(until([&] {
        program.passSecond();
        return program.asked >= 4;
    }));
    EXPECT_EQ(program.taken, std::vector{platform::kWorkMeasures[0]});
    program.passSeconds(5);
    EXPECT_EQ(program.taken, std::vector{platform::kWorkMeasures[0]});
}

TEST_F(OtherSystem, WhatAProgramTakesIsAskedAtMostOnceASecondAndOnlyForFrames) {
    BusyProgram program(system);
    ASSERT_TRUE(until([&] {
        program.passSecond();
        return program.asked > 0;
    }));
    program.asked = 0;
    program.passSeconds(30);
    EXPECT_GE(program.asked, 15);
    EXPECT_LE(program.asked, 30);
    program.asked = 0;
    for (int i = 0; i < 30; ++i)
        program.passSecond(false);
    EXPECT_EQ(program.asked, 0);
}

TEST_F(OtherSystem, WhereTheProcessorDoesNotDrawNoWorkIsCounted) {
    system->drawn.bySoftware = false;
    BusyProgram program(system);
    program.share = 3.0;
    ASSERT_TRUE(until([&] {
        program.passSecond();
        return system->drawn.frames() > 1;
    }));
    program.passSeconds(60);
    EXPECT_EQ(program.asked, 0);
    EXPECT_EQ(program.server.measure(), platform::kWorkMeasures[0]);
}

TEST_F(OtherSystem, AWindowIsDrawnAtItsFractionOfAPixel) {
    EXPECT_EQ(window.windowNumber(), 0);
    EXPECT_TRUE(window.reference().isEmpty());
    window.show();
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(system->drawn.sizes[0], QSize(150, 90));
    EXPECT_EQ(window.windowNumber(), 7);
    EXPECT_EQ(window.reference().text, QStringLiteral("p7"));
    EXPECT_TRUE(system->last->kept);
    EXPECT_EQ(window.backingScaleFactor(), 1.5);
}

TEST_F(OtherSystem, WhereTheSystemCannotFadeThePictureDoes) {
    window.show();
    ASSERT_TRUE(waitFor(1));
    EXPECT_EQ(system->drawn.lastOpacity(), 1.0);
    window.setAlpha(0.25);
    EXPECT_TRUE(until([&] { return system->drawn.lastOpacity() == 0.25; }));
}

TEST_F(OtherSystem, ASystemThatPacesFramesGetsNoneUntilItIsReady) {
    window.show();
    ASSERT_TRUE(waitFor(1));
    system->last->delegate.readyForFrame(false);
    EXPECT_TRUE(staysStill());
    const std::size_t before = system->drawn.frames();
    system->last->delegate.readyForFrame(true);
    EXPECT_TRUE(waitFor(before + 1));
}

TEST_F(OtherSystem, AWindowThatNobodySeesHasNoFrames) {
    window.show();
    ASSERT_TRUE(waitFor(1));
    system->last->covered = true;
    system->last->delegate.visibilityChanged();
    EXPECT_TRUE(staysStill());
    const std::size_t before = system->drawn.frames();
    system->last->covered = false;
    system->last->delegate.visibilityChanged();
    EXPECT_TRUE(waitFor(before + 1));
}

TEST_F(OtherSystem, TheDisplaysSleepIsTheServersToo) {
    window.show();
    ASSERT_TRUE(waitFor(1));
    ASSERT_TRUE(system->slept);
    system->slept(true);
    EXPECT_TRUE(server.isDisplayAsleep());
}

TEST_F(OtherSystem, AHostsWindowThatCannotBeAdoptedStaysEmpty) {
    Window host(server, HostRef{QStringLiteral("5")});
    EXPECT_FALSE(host.isVisible());
    EXPECT_EQ(host.windowNumber(), 0);
    EXPECT_EQ(host.statistics().frames, 0U);
}

TEST_F(OtherSystem, AnEndIsToldOnce) {
    int closed = 0;
    window.onClose([&] { ++closed; });
    window.show();
    ASSERT_TRUE(waitFor(1));
    system->last->delegate.gone();
    system->last->delegate.gone();
    EXPECT_EQ(closed, 1);
}

}  // namespace
