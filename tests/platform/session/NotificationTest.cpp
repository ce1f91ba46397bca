// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <utility>

#include "platform/session/BusLink.h"
#include "platform/session/DistributedNotificationCenter.h"
#include "platform/session/NotificationLink.h"
#include "platform/session/NotificationNames.h"
#include "platform/time/MediaClock.h"
#include "tests/support/BusSaver.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/Until.h"

using platform::DistributedNotificationCenter;

namespace {

const QString kWillStop = QStringLiteral("com.apple.screensaver.willstop");
const QString kDidStart = QLatin1String(platform::kSaverDidStart);
const QString kOther = QStringLiteral("org.example.thing.happened");

bool waitUntilReady(DistributedNotificationCenter& center) {
    bool ready = false;
    center.whenReady([&] { ready = true; });
    return until([&] { return ready; });
}

TEST(NotificationNames, TheLastWordIsTheMember) {
    const auto bus = platform::busNameOf(kWillStop);
    EXPECT_EQ(bus.interface, QStringLiteral("com.apple.screensaver"));
    EXPECT_EQ(bus.member, QStringLiteral("willstop"));
    EXPECT_EQ(bus.path, QStringLiteral("/com/apple/screensaver"));
}

TEST(NotificationNamesDeathTest, ANameWithoutTwoDotsIsAProgrammingError) {
    EXPECT_DEATH((void)platform::busNameOf(QStringLiteral("a.b")), "");
    EXPECT_DEATH((void)platform::busNameOf(QStringLiteral("a.b.c-d")), "");
}

struct OnABus : testing::Test {
    DBusDaemon bus;
    DistributedNotificationCenter center{bus.address()};
    int heard = 0;
    int key = 0;

    void SetUp() override { ASSERT_FALSE(bus.address().isEmpty()); }
    void listen(const QString& name) {
        center.addObserver(&key, name, [this] { ++heard; });
        ASSERT_TRUE(waitUntilReady(center));
    }
    // After all that was sent before.
    void flush() {
        int done = 0;
        int own = 0;
        center.addObserver(&own, kOther, [&] { ++done; });
        ASSERT_TRUE(waitUntilReady(center));
        ASSERT_TRUE(bus.send({QStringLiteral("/"), kOther}));
        ASSERT_TRUE(until([&] { return done == 1; }));
        center.removeObserver(&own);
    }
};

TEST_F(OnABus, ASignalOfThatNameFromAnyoneOnAnyPath) {
    listen(kWillStop);
    ASSERT_TRUE(bus.send({QStringLiteral("/"), kWillStop}));
    EXPECT_TRUE(until([&] { return heard == 1; }));
    ASSERT_TRUE(bus.send(
        {QStringLiteral("/some/where"), kWillStop, QStringLiteral("string:with arguments")}));
    EXPECT_TRUE(until([&] { return heard == 2; }));
}

TEST_F(OnABus, EachDesktopsActiveChangedFalse) {
    listen(kWillStop);
    int expected = 0;
    for (const char* desktop : platform::kSaverInterfaces) {
        BusSaver saver(bus.address(), QLatin1String(desktop));
        ASSERT_TRUE(saver.owns());
        ASSERT_TRUE(saver.say(true));
        ASSERT_TRUE(saver.say(false));
        ++expected;
        EXPECT_TRUE(until([&] { return heard == expected; })) << desktop;
    }
    flush();
    EXPECT_EQ(heard, expected);
}

TEST_F(OnABus, ActiveChangedTrueIsAStartAndEachIsHeardOnce) {
    int started = 0;
    center.addObserver(&started, kDidStart, [&] { ++started; });
    listen(kWillStop);
    BusSaver saver(bus.address());
    ASSERT_TRUE(saver.say(true));
    ASSERT_TRUE(saver.say(false));
    flush();
    EXPECT_EQ(started, 1);
    EXPECT_EQ(heard, 1);
    center.removeObserver(&started);
}

TEST_F(OnABus, ActiveChangedIsBelievedFromTheNamesOwnerAlone) {
    int started = 0;
    center.addObserver(&started, kDidStart, [&] { ++started; });
    listen(kWillStop);
    BusSaver saver(bus.address());
    for (const char* desktop : platform::kSaverInterfaces)
        for (const char* active : {"boolean:true", "boolean:false"})
            ASSERT_TRUE(bus.send({QStringLiteral("/ScreenSaver"),
                                  QLatin1String(desktop) + QStringLiteral(".ActiveChanged"),
                                  QLatin1String(active)}));
    flush();
    EXPECT_EQ(started, 0);
    EXPECT_EQ(heard, 0);
    center.removeObserver(&started);
}

TEST_F(OnABus, ASaverThatIsGoneIsNoLongerActive) {
    listen(kWillStop);
    {
        BusSaver saver(bus.address());
        ASSERT_TRUE(saver.say(true));
        flush();
        EXPECT_EQ(heard, 0);
    }
    EXPECT_TRUE(until([&] { return heard == 1; }));
}

TEST_F(OnABus, OneOfTwoSaversThatIsGoneLeavesTheOtherActive) {
    listen(kWillStop);
    {
        BusSaver stays(bus.address(), QStringLiteral("org.mate.ScreenSaver"));
        {
            BusSaver goes(bus.address());
            ASSERT_TRUE(goes.say(true));
            ASSERT_TRUE(stays.say(true));
            flush();
        }
        flush();
        EXPECT_EQ(heard, 0);
    }
    EXPECT_TRUE(until([&] { return heard == 1; }));
}

// The sender is a process that ends with its signal.
TEST_F(OnABus, AStartFromAnyoneEndsWithItsSender) {
    int started = 0;
    center.addObserver(&started, kDidStart, [&] { ++started; });
    listen(kWillStop);
    ASSERT_TRUE(bus.send({QStringLiteral("/"), kDidStart}));
    EXPECT_TRUE(until([&] { return started == 1 && heard == 1; }));
    center.removeObserver(&started);
}

TEST_F(OnABus, OtherSignalsAreNotHeard) {
    listen(kWillStop);
    ASSERT_TRUE(bus.send({QStringLiteral("/"), QStringLiteral("com.apple.screensaver.didpause")}));
    ASSERT_TRUE(bus.send({QStringLiteral("/"), QStringLiteral("org.other.saver.willstop")}));
    ASSERT_TRUE(
        bus.send({QStringLiteral("/"), QStringLiteral("org.gnome.ScreenSaver.ActiveChanged"),
                  QStringLiteral("string:false")}));
    flush();
    EXPECT_EQ(heard, 0);
}

TEST_F(OnABus, PostingReachesBothPrograms) {
    listen(kOther);
    DistributedNotificationCenter second{bus.address()};
    int there = 0;
    second.addObserver(this, kOther, [&] { ++there; });
    ASSERT_TRUE(waitUntilReady(second));
    center.post(kOther);
    EXPECT_TRUE(until([&] { return heard == 1 && there == 1; }));
}

TEST_F(OnABus, ARemovedObserverHearsNothingMore) {
    listen(kWillStop);
    center.removeObserver(&key);
    ASSERT_TRUE(bus.send({QStringLiteral("/"), kWillStop}));
    flush();
    EXPECT_EQ(heard, 0);
}

TEST_F(OnABus, TheBusMayDie) {
    listen(kWillStop);
    bus.stop();
    center.post(kOther);
    ASSERT_TRUE(waitUntilReady(center));
    EXPECT_EQ(heard, 0);
}

TEST(NotificationReceiver, WhatComesWithinOneTurnIsToldOnceInTheOrderOfTheLast) {
    QStringList told;
    platform::NotificationReceiver receiver([&](const QString& name) { told << name; });
    for (int i = 0; i < 1000; ++i) {
        receiver.note(kWillStop);
        receiver.note(kDidStart);
    }
    receiver.note(kOther);
    receiver.note(kWillStop);
    EXPECT_TRUE(told.isEmpty());
    ASSERT_TRUE(until([&] { return !told.isEmpty(); }));
    EXPECT_EQ(told, QStringList({QLatin1String(platform::kSaverDidStart), kOther, kWillStop}));
    receiver.note(kWillStop);
    ASSERT_TRUE(until([&] { return told.size() > 3; }));
    EXPECT_EQ(told.mid(3), QStringList(kWillStop));
}

TEST(NotificationReceiver, ASenderIsWatchedOnceHoweverOftenItSaysSo) {
    int watched = 0;
    platform::NotificationReceiver receiver([](const QString&) {},
                                            [&](const QString&, bool on) { watched += on; });
    auto signal = QDBusMessage::createSignal(
        QStringLiteral("/"), QStringLiteral("com.apple.screensaver"), QStringLiteral("didstart"));
    for (int i = 0; i < 100; ++i)
        receiver.notified(signal);
    EXPECT_EQ(watched, 1);  // one sender
}

TEST(NotificationReceiver, AHandlerMayBringAboutMore) {
    int told = 0;
    platform::NotificationReceiver* self = nullptr;
    platform::NotificationReceiver receiver([&](const QString& name) {
        if (++told < 3) self->note(name);
    });
    self = &receiver;
    receiver.note(kOther);
    EXPECT_TRUE(until([&] { return told == 3; }));
}

// While the bus brings one after the other, timers and all else have their turns.
TEST_F(OnABus, AFloodOfSignalsIsToldNowAndThenAndItsLastWordStands) {
    constexpr int kSent = 10'000;
    bool active = false;
    int told = 0;
    const auto hears = [&](const char* name, bool means) {
        center.addObserver(&told, QLatin1String(name), [&, means] {
            ++told;
            active = means;
        });
    };
    hears(platform::kSaverDidStart, true);
    hears(platform::kSaverWillStop, false);
    ASSERT_TRUE(waitUntilReady(center));
    BusSaver flood(bus.address());
    for (int i = 0; i < kSent; ++i)
        ASSERT_TRUE(flood.send(i % 2 == 0));
    // Once the bus has passed on all of them.
    ASSERT_TRUE(flood.say(false));
    flush();
    EXPECT_FALSE(active);
    EXPECT_GT(told, 0);
    EXPECT_LT(told, kSent / 2);
    center.removeObserver(&told);
}

TEST(WithoutABus, NotificationsStayInTheProgram) {
    DistributedNotificationCenter center{QString()};
    int heard = 0;
    center.addObserver(&heard, kWillStop, [&] { ++heard; });
    center.post(kWillStop);
    EXPECT_EQ(heard, 0);
    EXPECT_TRUE(until([&] { return heard == 1; }));
}

TEST(WithoutABus, AnAddressWhereNobodyListensIsNoError) {
    testing::internal::CaptureStderr();
    {
        DistributedNotificationCenter center{QStringLiteral("unix:path=/nonexistent/bus")};
        int heard = 0;
        center.addObserver(&heard, kWillStop, [&] { ++heard; });
        ASSERT_TRUE(waitUntilReady(center));
        center.post(kWillStop);
        EXPECT_TRUE(until([&] { return heard == 1; }));
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

// Links at one place in memory have one name.
TEST(WithoutABus, AFailedConnectionDoesNotOutliveItsLink) {
    const DBusDaemon bus;
    ASSERT_FALSE(bus.address().isEmpty());
    std::optional<platform::BusLink> link;
    for (const QString& address : {QStringLiteral("unix:path=/nonexistent/bus"), bus.address()}) {
        std::optional<bool> found;
        link.emplace(platform::BusLink::Options{
            .address = address, .name = "proef", .ready = [&](QDBusConnection* connection) {
                found = connection != nullptr;
            }});
        ASSERT_TRUE(until([&] { return found.has_value(); }));
        EXPECT_EQ(*found, address == bus.address());
    }
}

// Puts a variable of the environment back.
class Restored {
  public:
    explicit Restored(const char* name)
        : name_(name), was_(qEnvironmentVariableIsSet(name), qgetenv(name)) {}
    ~Restored() { was_.first ? (void)qputenv(name_, was_.second) : (void)qunsetenv(name_); }
    Restored(const Restored&) = delete;
    Restored& operator=(const Restored&) = delete;

  private:
    const char* const name_;
    const std::pair<bool, QByteArray> was_;
};

TEST(WithoutABus, NoneIsStarted) {
    const Restored bus("DBUS_SESSION_BUS_ADDRESS"), folder("XDG_RUNTIME_DIR");
    qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    qputenv("XDG_RUNTIME_DIR", "/nonexistent");
    EXPECT_EQ(DistributedNotificationCenter::sessionBusAddress(), QString());
    qunsetenv("XDG_RUNTIME_DIR");
    EXPECT_EQ(DistributedNotificationCenter::sessionBusAddress(), QString());
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/x");
    EXPECT_EQ(DistributedNotificationCenter::sessionBusAddress(), QStringLiteral("unix:path=/x"));
}

TEST(WithoutABus, HandlersMayAddAndRemoveObservers) {
    DistributedNotificationCenter center{QString()};
    int first = 0, second = 0, third = 0;
    center.addObserver(&first, kOther, [&] {
        ++first;
        center.removeObserver(&second);
        center.addObserver(&third, kOther, [&] { ++third; });
    });
    center.addObserver(&second, kOther, [&] { ++second; });
    center.post(kOther);
    ASSERT_TRUE(until([&] { return first == 1; }));
    EXPECT_EQ(second, 0);
    EXPECT_EQ(third, 0);
}

// The figure is a hundred times what it takes to start a thread; a machine that is
// busy with something else may take longer now and then, but not every time.
TEST(Notifications, LookingForTheBusKeepsNobodyWaiting) {
    DBusDaemon bus;
    ASSERT_FALSE(bus.address().isEmpty());
    const platform::SystemClock clock;
    double least = 1e9;
    for (int tries = 0; tries < 20; ++tries) {
        const double begin = clock.now();
        DistributedNotificationCenter center{bus.address()};
        int heard = 0;
        center.addObserver(&heard, kWillStop, [&] { ++heard; });
        least = std::min(least, clock.now() - begin);
        ASSERT_TRUE(waitUntilReady(center));
    }
    EXPECT_LT(least, 0.01);
}

}  // namespace
