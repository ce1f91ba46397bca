// SPDX-License-Identifier: MIT
// How often the main thread wakes up for a picture.
#include <sys/eventfd.h>
#include <unistd.h>

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <QTimer>
#include <atomic>

#include "tests/platform/window/wayland/MovingWindow.h"

namespace platform::wayland {
namespace {

// A clock moved by hand, whose timers fire as the system clock's do: by a file that the event
// loop waits for.
class LoopClock final : public MediaClock {
  public:
    explicit LoopClock(double start) : now_(start) {
        QObject::connect(&due_, &QSocketNotifier::activated, [this] { fireDue(); });
    }
    ~LoopClock() override { close(file_); }
    LoopClock(const LoopClock&) = delete;
    LoopClock& operator=(const LoopClock&) = delete;

    [[nodiscard]] double now() const override { return now_; }
    void advance(double seconds) {
        now_ = now_ + seconds;
        rearm();
    }

  private:
    void rearm() override {
        eventfd_t ignored = 0;
        eventfd_read(file_, &ignored);
        if (nextWake() <= now_) eventfd_write(file_, 1);
    }

    const int file_ = eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    std::atomic<double> now_;
    QSocketNotifier due_{file_, QSocketNotifier::Read};
};

class WakeUps : public testing::Test {
  protected:
    WakeUps() {
        QObject::connect(QAbstractEventDispatcher::instance(),
                         &QAbstractEventDispatcher::aboutToBlock, &here_, [this] { ++waits_; });
        QObject::connect(&tooLong_, &QTimer::timeout, [this] { isLate_ = true; });
        tooLong_.start(std::chrono::seconds(20));
    }
    // Runs the loop, which always waits, until the compositor has the next picture. Returns how
    // often the loop waited.
    int next(MovingWindowOn<LoopClock>& shown) {
        const int before = waits_;
        const int pictures = shown.pictures();
        shown.clock.advance(0.1);
        shown.compositor.frame(shown.clock.now());
        while (shown.pictures() == pictures && !isLate_)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        EXPECT_FALSE(isLate_);
        return waits_ - before;
    }
    // The first pictures make their buffers, and nothing is released yet.
    void begin(MovingWindowOn<LoopClock>& shown) {
        ASSERT_TRUE(shown.paintsOnce());
        for (int i = 0; i < 4; ++i)
            next(shown);
    }

  private:
    QObject here_;
    QTimer tooLong_;
    int waits_ = 0;
    bool isLate_ = false;
};

// For the compositor's answer, the painted picture, and the release of the buffer before.
TEST_F(WakeUps, AreThreeForAPictureOfTheProcessor) {
    MovingWindowOn<LoopClock> shown;
    begin(shown);
    for (int i = 0; i < 200 && !HasFailure(); ++i)
        EXPECT_EQ(next(shown), 3) << i;
}

// For the answer, the driver's use of the connection, and what arrives for the driver alone; two
// of them may come at once.
TEST_F(WakeUps, AreThreeAtMostForAPictureOfOpenGl) {
    MovingWindowOn<LoopClock> shown({}, DrawerChoice::OpenGl);
    begin(shown);
    int all = 0;
    for (int i = 0; i < 100 && !HasFailure(); ++i)
        all += next(shown);
    // The picture before the first one may still wake the loop twice.
    EXPECT_LE(all, 3 * 100 + 2);
}

}  // namespace
}  // namespace platform::wayland
