// SPDX-License-Identifier: MIT
#include "platform/sound/MonitorRecorder.h"

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <atomic>

#include "platform/sound/MonitorSource.h"
#include "tests/support/GeluidServer.h"
#include "tests/support/HostileSocket.h"
#include "tests/support/KlikSpoor.h"
#include "tests/support/Processen.h"

using platform::MonitorRecorder;
using steun::GeluidServer;

namespace {

const QStringList kMicrofoon{QStringLiteral("-L"),
                             QStringLiteral("module-null-source source_name=microfoon")};

struct Recording {
    std::atomic<long> samples = 0;
    std::atomic<double> loudest = 0;
    std::atomic<double> rate = 0;
    int lost = 0;
    MonitorRecorder recorder;

    explicit Recording(const QString& server)
        : recorder(
              {.server = server},
              [this](std::span<const float> sound, double r) {
                  samples += static_cast<long>(sound.size());
                  rate = r;
                  for (const float sample : sound)
                      if (std::abs(sample) > loudest) loudest = std::abs(sample);
              },
              [this] { ++lost; }) {}
};

QString recordings(GeluidServer& server) {
    return server.pactl(
        {QStringLiteral("list"), QStringLiteral("source-outputs"), QStringLiteral("short")});
}

TEST(MonitorSource, OnlyTheMonitorOfAnOutputIsOne) {
    pa_source_info source{};
    source.monitor_of_sink = PA_INVALID_INDEX;
    EXPECT_FALSE(platform::isMonitor(source));
    source.monitor_of_sink = 0;
    EXPECT_TRUE(platform::isMonitor(source));
}

TEST(MonitorRecorder, HearsWhatIsPlayed) {
    GeluidServer server;
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    EXPECT_EQ(recording.rate, 44'100);
    EXPECT_EQ(recording.loudest, 0.0);
    const steun::KlikSpoor track{.seconden = 1};
    ASSERT_TRUE(server.speel(track.maak(), track.tempo));
    EXPECT_TRUE(until([&] { return recording.loudest > 0.3; }));
    EXPECT_EQ(recording.lost, 0);
}

// An output of a rate, and that at which the server hands over what it plays.
class OutputOfRate : public testing::TestWithParam<std::pair<int, int>> {};

TEST_P(OutputOfRate, IsRecordedWithinTheLimits) {
    const auto [output, recorded] = GetParam();
    GeluidServer server(
        {QStringLiteral("-L"), QStringLiteral("module-null-sink rate=%1").arg(output)});
    ASSERT_TRUE(server.loopt());
    ASSERT_TRUE(
        server.pactl({QStringLiteral("list"), QStringLiteral("sinks"), QStringLiteral("short")})
            .contains(QStringLiteral(" %1Hz").arg(output)));
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    EXPECT_EQ(recording.rate, recorded);
    EXPECT_TRUE(recordings(server).contains(QStringLiteral(" 1ch %1Hz").arg(recorded)))
        << qPrintable(recordings(server));
}

INSTANTIATE_TEST_SUITE_P(MonitorRecorder, OutputOfRate,
                         testing::Values(std::pair(4'000, 8'000), std::pair(8'000, 8'000),
                                         std::pair(22'050, 22'050), std::pair(48'000, 48'000),
                                         std::pair(96'000, 48'000)),
                         [](const auto& rates) { return std::to_string(rates.param.first); });

TEST(MonitorRecorder, FollowsTheDefaultOutput) {
    GeluidServer server(GeluidServer::nulUitgang(QStringLiteral("een")) +
                        GeluidServer::nulUitgang(QStringLiteral("twee")));
    ASSERT_TRUE(server.loopt());
    server.pactl({QStringLiteral("set-default-sink"), QStringLiteral("een")});
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    server.pactl({QStringLiteral("set-default-sink"), QStringLiteral("twee")});
    const auto source =
        server.pactl({QStringLiteral("list"), QStringLiteral("sources"), QStringLiteral("short")});
    const QString number =
        source.section(QStringLiteral("\ttwee.monitor"), 0, 0).section(u'\n', -1);
    EXPECT_TRUE(until([&] { return recordings(server).section(u'\t', 1, 1) == number; }))
        << qPrintable(recordings(server));
    EXPECT_EQ(recordings(server).count(u'\n'), 1);
}

TEST(MonitorRecorder, AMicrophoneIsNotHeardWhereThereIsNoOutput) {
    GeluidServer server(kMicrofoon);
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    // The recording has asked for everything once the server lists it as a client.
    ASSERT_TRUE(until([&] {
        return server.pactl({QStringLiteral("list"), QStringLiteral("clients")})
            .contains(QStringLiteral("Brixtel"));
    }));
    server.pactl({QStringLiteral("set-default-source"), QStringLiteral("microfoon")});
    EXPECT_EQ(recordings(server), QString());
    EXPECT_EQ(recording.samples, 0);
    // An output that comes later is heard, by its monitor.
    server.pactl({QStringLiteral("load-module"), QStringLiteral("module-null-sink")});
    EXPECT_TRUE(until([&] { return recording.samples > 0; }));
}

TEST(MonitorRecorder, CannotBeMovedToAMicrophone) {
    GeluidServer server(GeluidServer::nulUitgang(QStringLiteral("een")) + kMicrofoon);
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    const QString before = recordings(server);
    const QString number = before.section(u'\t', 0, 0);
    EXPECT_EQ(
        server.pactl({QStringLiteral("move-source-output"), number, QStringLiteral("microfoon")}),
        QString());
    EXPECT_EQ(recordings(server), before);
}

TEST(MonitorRecorder, IsSilentWhenItsOutputGoes) {
    GeluidServer server;
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    server.pactl({QStringLiteral("unload-module"), QStringLiteral("module-null-sink")});
    EXPECT_TRUE(until([&] { return recordings(server).isEmpty(); }));
    const long before = recording.samples;
    server.pactl({QStringLiteral("load-module"), QStringLiteral("module-null-sink")});
    EXPECT_TRUE(until([&] { return recording.samples > before; }));
    EXPECT_EQ(recording.lost, 0);
}

// Has the server itself do what a mixer may ask for, and pactl cannot.
void command(GeluidServer& server, const QByteArray& line) {
    const QByteArray path = server.adres().section(u':', 1).toLocal8Bit() + "-cli";
    server.pactl({QStringLiteral("load-module"), QStringLiteral("module-cli-protocol-unix"),
                  QStringLiteral("socket=") + QString::fromLocal8Bit(path)});
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    ASSERT_LT(static_cast<std::size_t>(path.size()), sizeof address.sun_path);
    std::copy(path.begin(), path.end(), address.sun_path);
    const int door = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    EXPECT_EQ(connect(door, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(write(door, line.constData(), static_cast<std::size_t>(line.size())), line.size());
    // The server reads to the end before it closes.
    shutdown(door, SHUT_WR);
    char said = 0;
    while (read(door, &said, 1) > 0) {
    }
    close(door);
}

TEST(MonitorRecorder, BeginsAnewWhenAMixerEndsIt) {
    GeluidServer server;
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    const QString before = recordings(server).section(u'\t', 0, 0);
    command(server, "kill-source-output " + before.toLatin1() + "\n");
    EXPECT_TRUE(until([&] {
        const QString now = recordings(server).section(u'\t', 0, 0);
        return !now.isEmpty() && now != before;
    }));
    const long samples = recording.samples;
    EXPECT_TRUE(until([&] { return recording.samples > samples; }));
    EXPECT_EQ(recording.lost, 0);
}

TEST(MonitorRecorder, AServerThatIsNotThereIsToldOnceAndLater) {
    Recording recording(QStringLiteral("unix:/nonexistent/native"));
    EXPECT_EQ(recording.lost, 0);
    EXPECT_TRUE(until([&] { return recording.lost == 1; }));
    EXPECT_EQ(recording.samples, 0);
}

TEST(MonitorRecorder, AServerThatDiesIsTold) {
    GeluidServer server;
    ASSERT_TRUE(server.loopt());
    Recording recording(server.adres());
    ASSERT_TRUE(until([&] { return recording.samples > 0; }));
    server.stop();
    EXPECT_TRUE(until([&] { return recording.lost == 1; }));
}

// A server that passes no descriptors to its clients.
QStringList withoutDescriptors() {
    return GeluidServer::nulUitgang(QStringLiteral("een")) << QStringLiteral("--disable-shm=yes");
}

TEST(MonitorRecorder, AConnectionThatBreaksAtAnyByteIsTold) {
    const GeluidServer server(withoutDescriptors());
    for (const std::size_t bytes : {1, 20, 21, 100, 300, 400, 500, 700, 1000, 1500, 5000}) {
        const HostileSocket door(server.socket(), {.cutAfter = bytes});
        ASSERT_TRUE(door.isRunning());
        Recording recording(QStringLiteral("unix:") + QString::fromStdString(door.path()));
        EXPECT_TRUE(until([&] { return recording.lost == 1; })) << bytes;
        EXPECT_EQ(door.deeds(), 1U) << bytes;
    }
}

TEST(MonitorRecorder, AServerThatAnswersNonsenseOrNothingCanBeDropped) {
    const GeluidServer server(withoutDescriptors());
    constexpr std::array kShares{0.0005, 0.01, 0.2};
    for (std::uint32_t seed = 0; seed < 20; ++seed) {
        const HostileSocket door(
            server.socket(),
            {.seed = seed,
             .muteAfter = seed % 5 == 4 ? std::optional<std::size_t>(0) : std::nullopt,
             .garbage = kShares.at(seed % 3)});
        ASSERT_TRUE(door.isRunning());
        Recording recording(QStringLiteral("unix:") + QString::fromStdString(door.path()));
        EXPECT_TRUE(until([&] { return door.deeds() > 0; })) << seed;
        // A client that waits for an answer waits for half a minute.
        constexpr int kMilliseconds = 300;
        until([&] { return recording.lost == 1 || recording.samples > 100'000; }, kMilliseconds);
        EXPECT_LE(recording.lost, 1) << seed;
    }
}

TEST(MonitorRecorder, NothingIsLeftOfOneThatWasDropped) {
    GeluidServer server;
    ASSERT_TRUE(server.loopt());
    const auto cycle = [&](bool heard) {
        Recording recording(server.adres());
        if (heard) until([&] { return recording.samples > 0; });
    };
    cycle(true);
    const long descriptors = steun::descriptors();
    for (int i = 0; i < 5; ++i)
        cycle(i % 2 == 0);
    EXPECT_EQ(steun::descriptors(), descriptors);
    EXPECT_TRUE(until([&] { return recordings(server).isEmpty(); }));
}

}  // namespace
