// SPDX-License-Identifier: MIT
// Whatever a compositor and its user do, in any order.
#include <linux/input-event-codes.h>

#include "platform/time/RandomSource.h"
#include "tests/platform/window/wayland/WaylandFixture.h"
#include "tests/support/Processen.h"

namespace platform::wayland {
namespace {

constexpr int kEvents = 100'000;
constexpr std::int64_t kWorthPainting = 300'000;  // pixels; larger ones only cost time

class Storm {
  public:
    explicit Storm(std::uint64_t seed) : random_(seed) {
        NativeWindowOptions black = saver();
        black.window.level = 2000;
        windows_.push_back(std::make_unique<TestWindow>(f_.system, rain({0, 0, 64, 48})));
        windows_.push_back(std::make_unique<TestWindow>(f_.system, saver({0, 0, 64, 48})));
        windows_.push_back(std::make_unique<TestWindow>(f_.system, black));
        windows_.push_back(std::make_unique<TestWindow>(
            f_.system, NativeWindowOptions{
                           .window = {.frame = {0, 0, 50, 40}, .style = WindowStyle::Titled}}));
    }

    void blow(int events) {
        for (int i = 0; i < events && f_.system.isConnected(); ++i)
            step();
        thaw();
        f_.settle();
    }

    [[nodiscard]] bool isAlive() const { return f_.system.isConnected(); }
    [[nodiscard]] int clicksSent() const { return clicks_; }
    [[nodiscard]] int clicksGot() const {
        std::size_t got = 0;
        for (const auto& window : windows_)
            got += window->clicks.size();
        return static_cast<int>(got);
    }
    [[nodiscard]] const TestWindow& rainWindow() const { return *windows_[0]; }

  private:
    static wltest::Options calm() {
        wltest::Options options;
        options.outputs = {{.name = "A", .mode = {64, 48}}};
        return options;
    }

    QSize size() {
        static constexpr std::array kOdd{0, 1, 2, 17, 100, 333};
        const auto one = [this] { return kOdd[random_.below(kOdd.size())]; };
        return {one(), one()};
    }
    double scale() {
        static constexpr std::array kScales{1.0, 1.25, 1.5, 2.0, 2.75};
        return kScales[random_.below(kScales.size())];
    }
    TestWindow& any() { return *windows_[random_.below(4)]; }
    QPointF place() { return {random_.between(0.0, 200.0), random_.between(0.0, 60.0)}; }

    void step() {
        switch (random_.below(16)) {
            case 0:
                return any().native->show();
            case 1:
                if (random_.below(3) == 0) any().native->hide();
                return;
            case 2:
            case 3:
            case 4:
            case 5:
                return paint(any());
            case 6:
            case 7:
                return f_.compositor.frame();
            case 8:
                return outputs();
            case 9:
                return configure();
            case 10:
                return click();
            case 11:
                f_.compositor.pointerTo(place());
                return;
            case 12:
                f_.compositor.key(KEY_A, random_.coin());
                return;
            case 13:
                return misbehave();
            case 14:
                if (random_.below(4) == 0) f_.system.workspace().setSaverCovers(random_.coin());
                return;
            default:
                // Without waiting for one that does not answer.
                return frozen_ ? QCoreApplication::processEvents() : f_.settle();
        }
    }

    void thaw() {
        f_.compositor.thaw();
        frozen_ = false;
    }

    void paint(TestWindow& window) {
        const QSize pixels = window.native->pixelSize();
        if (std::int64_t{pixels.width()} * pixels.height() > kWorthPainting) return;
        window.paintAll({0.0F, 0.5F, 0.0F, 0.5F}, random_.below(5) == 0 ? 0.5 : 1.0);
    }

    void outputs() {
        const bool isB = random_.coin();
        const wltest::Output output{.name = isB ? "B" : "A",
                                    .mode = {64 + static_cast<int>(random_.below(3)) * 16, 48},
                                    .scale = scale(),
                                    .transform = static_cast<int>(random_.below(4)),
                                    .at = {isB ? 100 : 0, 0}};
        bool& there = isB ? hasB_ : hasA_;
        if (!there) {
            f_.compositor.addOutput(output);
            there = true;
        } else if (random_.below(3) == 0) {
            f_.compositor.removeOutput(output.name);
            there = false;
        } else {
            f_.compositor.changeOutput(output);
        }
    }

    void configure() {
        const auto ids = f_.compositor.ids();
        if (ids.empty()) return;
        const std::uint64_t id = ids[random_.below(static_cast<std::uint32_t>(ids.size()))];
        if (random_.below(20) == 0) return f_.compositor.close(id);
        if (random_.below(50) == 0) return f_.compositor.configure(id, {2'000'000'000, 7});
        f_.compositor.configure(id, size());
    }

    void click() {
        thaw();
        f_.settle();
        if (f_.compositor.click(place()) != 0) ++clicks_;
        f_.settle();
    }

    void misbehave() {
        switch (random_.below(4)) {
            case 0:
                return f_.compositor.setReleasesBuffers(random_.below(4) != 0);
            case 1:
                return f_.compositor.setSeat(random_.below(4) != 0, true);
            case 2:
                f_.compositor.freeze();
                frozen_ = true;
                return;
            default:
                return thaw();
        }
    }

    RandomSource random_;
    WaylandFixture f_{calm()};
    std::vector<std::unique_ptr<TestWindow>> windows_;
    bool hasA_ = true, hasB_ = false;
    bool frozen_ = false;
    int clicks_ = 0;
};

TEST(WaylandEvents, AHundredThousandInAnyOrderLoseNoClickAndEndNothing) {
    Storm storm(2718);
    storm.blow(kEvents);
    EXPECT_TRUE(storm.isAlive());
    EXPECT_GT(storm.clicksSent(), 100);
    EXPECT_EQ(storm.clicksGot(), storm.clicksSent());
    EXPECT_TRUE(storm.rainWindow().clicks.empty());
    EXPECT_TRUE(storm.rainWindow().keys.empty());
}

TEST(WaylandEvents, NoneOfThemLeavesAFileOpen) {
    {
        Storm once(1);
        once.blow(2000);
    }
    const long before = steun::descriptors();
    for (const std::uint64_t seed : {2, 3, 4}) {
        Storm storm(seed);
        storm.blow(2000);
        EXPECT_TRUE(storm.isAlive()) << seed;
    }
    EXPECT_EQ(steun::descriptors(), before);
}

}  // namespace
}  // namespace platform::wayland
