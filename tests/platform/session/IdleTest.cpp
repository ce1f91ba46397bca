// SPDX-License-Identifier: MIT
// The time without input as the session bus knows it, who holds a saver up, and which other
// savers there are.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <vector>

#include "platform/session/IdleInhibitors.h"
#include "platform/session/MutterIdle.h"
#include "platform/session/OtherSavers.h"
#include "tests/support/BusSaver.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/IdleBus.h"

namespace platform {
namespace {

// --- GNOME's monitor ---

struct OnGnome : testing::Test {
    DBusDaemon bus;
    IdleMonitor gnome{bus.address()};
    std::vector<bool> idle, present;

    [[nodiscard]] std::unique_ptr<MutterIdle> watch(double seconds = 120.0) {
        return std::make_unique<MutterIdle>(
            bus.address(), seconds,
            MutterIdle::Actions{.idle = [this](bool is) { idle.push_back(is); },
                                .present = [this](bool is) { present.push_back(is); }});
    }
    bool told(const std::vector<bool>& expected) {
        return until([&] { return idle == expected; });
    }
    [[nodiscard]] uint number() const { return gnome.idleWatches.rbegin()->first; }
};

TEST_F(OnGnome, TheWatchFiresAndTheNextInputIsAwaitedOnce) {
    ASSERT_TRUE(gnome.appear());
    const auto watching = watch();
    ASSERT_TRUE(until([&] { return present == std::vector<bool>{true}; }));
    ASSERT_EQ(gnome.idleWatches.size(), 1U);
    EXPECT_EQ(gnome.idleWatches.begin()->second, 120'000U);
    EXPECT_TRUE(gnome.activeWatches.empty());
    gnome.fire(number() + 7);  // another program's
    gnome.fire(number());
    ASSERT_TRUE(told({true}));
    ASSERT_TRUE(until([&] { return gnome.activeWatches.size() == 1; }));
    gnome.fire(gnome.activeWatches.front());
    ASSERT_TRUE(told({true, false}));
    gnome.fire(number());
    ASSERT_TRUE(told({true, false, true}));
    ASSERT_TRUE(until([&] { return gnome.activeWatches.size() == 2; }));
    EXPECT_EQ(gnome.idleWatches.size(), 1U);
}

TEST_F(OnGnome, InputBeforeItsNumberIsKnownCounts) {
    ASSERT_TRUE(gnome.appear());
    gnome.firesEarly = true;
    const auto watching = watch();
    ASSERT_TRUE(until([&] { return !present.empty(); }));
    gnome.fire(number());
    EXPECT_TRUE(told({true, false}));
}

TEST_F(OnGnome, ACompositorThatRestartsIsAskedAgain) {
    ASSERT_TRUE(gnome.appear());
    const auto watching = watch();
    ASSERT_TRUE(until([&] { return present == std::vector<bool>{true}; }));
    gnome.fire(number());
    ASSERT_TRUE(told({true}));
    ASSERT_TRUE(gnome.vanish());
    ASSERT_TRUE(until([&] { return present == std::vector<bool>({true, false}); }));
    EXPECT_EQ(idle, (std::vector<bool>{true, false}));
    ASSERT_TRUE(gnome.appear());
    ASSERT_TRUE(until([&] { return present == std::vector<bool>({true, false, true}); }));
    gnome.fire(number());
    EXPECT_TRUE(told({true, false, true}));
}

TEST_F(OnGnome, OneThatRefusesIsAbsent) {
    gnome.refuses = true;
    ASSERT_TRUE(gnome.appear());
    const auto watching = watch();
    ASSERT_TRUE(until([&] { return !present.empty(); }));
    EXPECT_EQ(present, std::vector<bool>{false});
}

TEST(MutterIdle, WithoutABusItIsAbsentInALaterTurn) {
    std::vector<bool> present;
    const MutterIdle watching(
        QString(), 60.0, {.idle = [](bool) {}, .present = [&](bool is) { present.push_back(is); }});
    EXPECT_TRUE(present.empty());
    QCoreApplication::processEvents();
    EXPECT_EQ(present, std::vector<bool>{false});
}

// --- those who hold a saver up ---

struct Held : testing::Test {
    DBusDaemon bus;
    ManualClock clock{100.0};
    std::vector<bool> told;
    IdleInhibitors inhibitors{clock, bus.address(), [this](bool any) { told.push_back(any); }};

    // The monitor of the bus is there from then on.
    void SetUp() override {
        Inhibitor probe(bus.address());
        ASSERT_TRUE(until([&] {
            probe.holdSaver();
            return told == std::vector<bool>{true};
        }));
        ASSERT_TRUE(until([&] {
            probe.letGoOfSaver();
            return told.size() == 2;
        }));
        told.clear();
    }
    bool isTold(const std::vector<bool>& expected) {
        return until([&] { return told == expected; });
    }
};

TEST_F(Held, ByTheSaversNameUntilItIsLetGo) {
    Inhibitor film(bus.address());
    film.holdSaver();
    ASSERT_TRUE(isTold({true}));
    film.letGoOfSaver();
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, ByTwoUntilTheLastLetsGo) {
    Inhibitor film(bus.address()), call(bus.address());
    film.holdSaver();
    call.holdSaver();
    call.holdSaver();
    film.letGoOfSaver();
    call.letGoOfSaver();
    // A third one's end changes nothing, and says that all before it was seen.
    Inhibitor third(bus.address());
    third.holdSession(8);
    third.letGoOfSession();
    ASSERT_TRUE(isTold({true}));
    call.letGoOfSaver();
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, UntilTheProgramLeavesTheBus) {
    {
        Inhibitor film(bus.address());
        film.holdSaver();
        ASSERT_TRUE(isTold({true}));
    }
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, ByThePortalUntilThatRequestIsClosed) {
    Inhibitor call(bus.address());
    call.holdPortal(8, QStringLiteral("t1"));
    call.holdPortal(8 | 4, QStringLiteral("t2"));
    call.closeRequest(QStringLiteral("file_chooser"));
    call.closeRequest(QStringLiteral("t1"));
    ASSERT_TRUE(isTold({true}));
    call.closeRequest(QStringLiteral("t2"));
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, ByThePortalWithoutATokenUntilARequestIsClosed) {
    Inhibitor call(bus.address());
    call.holdPortal(8);
    ASSERT_TRUE(isTold({true}));
    call.closeRequest(QStringLiteral("whatever"));
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, NotByARequestAgainstLoggingOutOrSleeping) {
    Inhibitor call(bus.address());
    call.holdPortal(1 | 2 | 4, QStringLiteral("t1"));
    call.holdSession(1 | 2 | 4);
    Inhibitor film(bus.address());
    film.holdSession(8);
    ASSERT_TRUE(isTold({true}));
    film.letGoOfSession();
    EXPECT_TRUE(isTold({true, false}));
}

TEST_F(Held, AFreeNameIsTakenLateAndAnsweredThere) {
    Inhibitor film(bus.address());
    EXPECT_EQ(film.holdSaver().type(), QDBusMessage::ErrorMessage);
    film.letGoOfSaver();
    ASSERT_TRUE(isTold({true, false}));
    clock.advance(IdleInhibitors::kPatience - 0.1);
    EXPECT_EQ(film.holdSaver().type(), QDBusMessage::ErrorMessage);
    film.letGoOfSaver();
    clock.advance(0.2);
    QDBusMessage answer;
    ASSERT_TRUE(until([&] {
        answer = film.holdSaver();
        if (answer.type() != QDBusMessage::ReplyMessage) film.letGoOfSaver();
        return answer.type() == QDBusMessage::ReplyMessage;
    }));
    ASSERT_EQ(answer.signature(), QStringLiteral("u"));
    EXPECT_GT(answer.arguments().first().toUInt(), 0U);
    ASSERT_TRUE(until([&] { return !told.empty() && told.back(); }));
    EXPECT_EQ(film.letGoOfSaver(answer.arguments().first().toUInt()).type(),
              QDBusMessage::ReplyMessage);
    // Counted once, though the monitor reads it too.
    EXPECT_TRUE(until([&] { return !told.back(); }));
}

TEST_F(Held, ATakenNameIsLeftToItsOwner) {
    const BusSaver desktop(bus.address(), QStringLiteral("org.freedesktop.ScreenSaver"));
    ASSERT_TRUE(desktop.owns());
    clock.advance(IdleInhibitors::kPatience + 1.0);
    Inhibitor film(bus.address());
    film.holdSaver();
    ASSERT_TRUE(isTold({true}));
    // The queue that would take the name has watched the caller after it.
    film.letGoOfSaver();
    ASSERT_TRUE(isTold({true, false}));
    EXPECT_EQ(film.holdSaver().type(), QDBusMessage::ErrorMessage);
}

TEST(IdleInhibitors, WithoutABusThereAreNone) {
    ManualClock clock;
    int told = 0;
    const IdleInhibitors inhibitors(clock, QString(), [&](bool) { ++told; });
    clock.advance(60.0);
    QCoreApplication::processEvents();
    EXPECT_EQ(told, 0);
}

// --- other savers ---

TEST(OtherSavers, AreKnownBeforeAndAfterTheStartAndTheSharedNameIsNone) {
    const DBusDaemon bus;
    const BusSaver shared(bus.address(), QStringLiteral("org.freedesktop.ScreenSaver"));
    auto mate = std::make_unique<BusSaver>(bus.address(), QStringLiteral("org.mate.ScreenSaver"));
    std::vector<bool> told;
    const OtherSavers savers(bus.address(), [&](bool any) { told.push_back(any); });
    ASSERT_TRUE(until([&] { return told == std::vector<bool>{true}; }));
    auto xfce = std::make_unique<BusSaver>(bus.address(), QStringLiteral("org.xfce.ScreenSaver"));
    ASSERT_TRUE(xfce->owns());
    mate.reset();
    xfce.reset();
    EXPECT_TRUE(until([&] { return told.size() == 2; }));
    EXPECT_EQ(told, (std::vector<bool>{true, false}));
}

}  // namespace
}  // namespace platform
