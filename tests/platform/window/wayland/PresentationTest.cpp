// SPDX-License-Identifier: MIT
// A window follows the times at which its pictures were shown, and costs nothing while they
// are not.
#include <QDir>
#include <QFile>

#include "platform/window/Window.h"
#include "tests/platform/window/wayland/WaylandFixture.h"

namespace platform::wayland {
namespace {

using wltest::Options;

struct Presentation : testing::Test {
    // A window with a picture that always moves, on a clock moved by hand.
    struct Shown {
        explicit Shown(const Options& options = {}) : compositor(options) {
            auto view = std::make_shared<View>(QRectF());
            view->setWantsLayer(true);
            view->layer()->setBackgroundColor(Qt::green);
            view->layer()->addAnimation(
                "moves",
                BasicAnimation{.keyPath = KeyPath::Opacity,
                               .from = 0.0,
                               .to = 1.0,
                               .timing = {.duration = 10.0, .repeatCount = 1.0e6}},
                clock.now());
            window.setContentView(view);
            window.show();
        }
        // The pictures that were handed to the compositor: only they ask for a callback.
        int pictures() { return compositor.count("wl_surface", "frame"); }
        // Lets time go by until there is one more than at the last call.
        bool paintsOnce() {
            const int before = painted_;
            until([&] {
                if (pictures() == before) clock.advance(0.001);
                return pictures() > before;
            });
            painted_ = pictures();
            return painted_ > before;
        }
        std::uint64_t frames() { return window.statistics().frames; }
        // Both sides have acted on all that the other did, and the render thread rests.
        void settle() {
            for (int i = 0; i < 3; ++i) {
                QCoreApplication::processEvents();
                (void)system->connection().roundTrip();
            }
        }

        wltest::Compositor compositor;
        ManualClock clock{100.0};
        std::shared_ptr<WaylandSystem> system =
            std::make_shared<WaylandSystem>(clock, compositor.address());
        WindowServer server{clock, {.system = system}};
        Window window{server, {.frame = {0, 0, 640, 480}, .style = WindowStyle::FullScreen}};

      private:
        int painted_ = 0;
    };
};

TEST_F(Presentation, APictureCountsOnceItWasShown) {
    Shown shown;
    ASSERT_TRUE(shown.paintsOnce());
    for (int i = 0; i < 5; ++i) {
        const auto time = 12.5 + i;
        // Before the first report nobody knows whether there will be any.
        if (i > 0) {
            EXPECT_EQ(shown.frames(), static_cast<std::uint64_t>(i));
        }
        shown.compositor.frame(time);
        EXPECT_TRUE(until([&] { return shown.frames() == static_cast<std::uint64_t>(i) + 1; }));
        ASSERT_TRUE(shown.paintsOnce());
    }
    EXPECT_EQ(shown.window.statistics().firstFrameTime, 12.5);
    // The last one was committed, and nobody saw it.
    shown.settle();
    EXPECT_EQ(shown.frames(), 5U);
}

TEST_F(Presentation, ACompositorThatOffersReportsAndSendsNoneIsNotAskedForever) {
    Shown shown({.reportsPresentation = false});
    for (int i = 0; i < 20; ++i) {
        ASSERT_TRUE(shown.paintsOnce());
        shown.compositor.frame(12.5);
        shown.settle();
    }
    // The render thread counts the last picture after its commit.
    EXPECT_TRUE(until([&] { return shown.frames() >= 20U; }));
    EXPECT_EQ(shown.compositor.count("wp_presentation", "feedback"), 8);
}

TEST_F(Presentation, WithoutReportsAPictureCountsOnceItWasDrawn) {
    Shown shown({.globals = {.presentation = false}});
    ASSERT_TRUE(shown.paintsOnce());
    EXPECT_TRUE(until([&] { return shown.frames() >= 1; }));
    EXPECT_TRUE(until([&] { return shown.window.statistics().firstFrameTime >= 100.0; }));
}

TEST_F(Presentation, TimesOfAnotherClockAreNotAskedFor) {
    Shown shown({.presentationClock = CLOCK_REALTIME});
    ASSERT_TRUE(shown.paintsOnce());
    EXPECT_EQ(shown.compositor.count("wp_presentation", "feedback"), 0);
    EXPECT_TRUE(until([&] { return shown.frames() >= 1; }));
}

// The output says 60 pictures a second, and shows 90.
TEST_F(Presentation, ThePaceIsThatOfTheDisplayAsItWasSeen) {
    constexpr std::uint32_t kNanoseconds = 11'111'111;
    constexpr double kInterval = kNanoseconds * 1.0e-9;
    Shown shown;
    ASSERT_TRUE(shown.paintsOnce());
    for (std::uint64_t i = 1; i <= 2; ++i) {
        shown.compositor.frame(100.0, kNanoseconds);
        ASSERT_TRUE(until([&] { return shown.frames() == i; }));
        ASSERT_TRUE(shown.paintsOnce());
    }
    // At the pace that was told, only two beats of three would have a picture.
    const int first = shown.pictures();
    for (int i = 0; i < 20; ++i) {
        const int before = shown.pictures();
        shown.compositor.frame(100.0, kNanoseconds);
        shown.settle();
        shown.clock.advance(1.01 * kInterval);
        ASSERT_TRUE(until([&] { return shown.pictures() > before; })) << i;
    }
    shown.settle();
    EXPECT_LE(shown.pictures(), first + 21);
}

// How often the thread of that name was given a processor, by the kernel's count; -1 while
// the thread does not sleep.
std::int64_t runsOf(const QByteArray& name) {
    std::int64_t runs = -1;
    const QDir tasks(QStringLiteral("/proc/self/task"));
    for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        QFile comm(tasks.filePath(task) + QStringLiteral("/comm"));
        QFile status(tasks.filePath(task) + QStringLiteral("/status"));
        if (!comm.open(QIODevice::ReadOnly) || comm.readAll().trimmed() != name) continue;
        if (!status.open(QIODevice::ReadOnly)) continue;
        const QByteArray text = status.readAll();
        if (!text.contains("State:\tS")) return -1;
        runs = 0;
        for (const QByteArray& line : text.split('\n'))
            if (line.contains("ctxt_switches")) runs += line.split('\t').last().toLongLong();
    }
    return runs;
}

struct AMinute : Presentation {
    // A minute at 60 a second goes by: nothing is committed, and the render thread sleeps.
    static void nothingHappensIn(Shown& shown) {
        shown.settle();
        const int commits = shown.compositor.count("wl_surface", "commit");
        // The thread ends its work on the last picture.
        std::int64_t runs = -1;
        int same = 0;
        ASSERT_TRUE(until([&] {
            const std::int64_t now = runsOf("render");
            same = now >= 0 && now == runs ? same + 1 : 0;
            runs = now;
            return same == 20;
        }));
        for (int i = 0; i < 3600; ++i) {
            shown.clock.advance(1.0 / 60.0);
            QCoreApplication::processEvents();
        }
        shown.settle();
        EXPECT_EQ(shown.compositor.count("wl_surface", "commit"), commits);
        EXPECT_EQ(runsOf("render"), runs);
    }
    // Some pictures came before.
    static void begin(Shown& shown) {
        for (int i = 0; i < 3; ++i) {
            ASSERT_TRUE(shown.paintsOnce());
            shown.compositor.frame(100.0);
            ASSERT_TRUE(until([&] { return shown.frames() == static_cast<unsigned>(i) + 1; }));
        }
    }
    static void goesOn(Shown& shown) {
        const auto before = shown.pictures();
        EXPECT_TRUE(until([&] {
            shown.clock.advance(0.001);
            shown.compositor.frame(100.0);
            return shown.pictures() > before + 3;
        }));
    }
};

TEST_F(AMinute, CoveredCostsNothing) {
    Shown shown;
    begin(shown);
    // One more picture, which the compositor does not show.
    ASSERT_TRUE(shown.paintsOnce());
    nothingHappensIn(shown);
    goesOn(shown);
}

TEST_F(AMinute, HiddenCostsNothing) {
    Shown shown;
    begin(shown);
    shown.window.hide();
    nothingHappensIn(shown);
    shown.window.show();
    goesOn(shown);
}

TEST_F(AMinute, LockedCostsNothing) {
    Shown shown;
    begin(shown);
    shown.system->workspace().setSaverCovers(true);
    EXPECT_TRUE(shown.compositor.shown().empty());
    nothingHappensIn(shown);
    shown.system->workspace().setSaverCovers(false);
    goesOn(shown);
}

}  // namespace
}  // namespace platform::wayland
