// SPDX-License-Identifier: MIT
// The desktop's program whole, where its black screen follows the music of a hostile sound
// server: slow, silent, breaking off, talking nonsense. The program answers all the same, and
// ends when it is told to.
//
// BRIXTEL_VIJANDIG=N tries N seeds of each kind, from BRIXTEL_VIJANDIG_VAN on.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <random>

#include "tests/hosts/saver/Programma.h"
#include "tests/hosts/saver/Zaden.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/GeluidServer.h"
#include "tests/support/HostileSocket.h"

using brixtel::bureauPad;
using brixtel::Programma;
using steun::GeluidServer;

namespace {

class VijandigGeluid : public testing::Test {
  protected:
    Xvfb server_{"320x240x24"};
    DBusDaemon bus_;
    // Descriptors do not pass a hostile socket.
    GeluidServer geluid_{GeluidServer::nulUitgang(QStringLiteral("een"))
                         << QStringLiteral("--disable-shm=yes")};

    void SetUp() override {
        ASSERT_TRUE(server_.isRunning());
        ASSERT_FALSE(bus_.address().isEmpty());
        ASSERT_TRUE(geluid_.loopt());
    }

    void zetOmgeving(Programma& programma, const HostileSocket& deur) const {
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus_.address());
        programma.zet(QStringLiteral("PULSE_SERVER"),
                      QStringLiteral("unix:") + QString::fromStdString(deur.path()));
    }
    // The exit status of a request; its line of error is a failure.
    int vraag(const HostileSocket& deur, const char* wat) const {
        Programma programma({}, bureauPad());
        zetOmgeving(programma, deur);
        programma.draai({QLatin1String(wat)});
        return programma.doorSignaal() ? -1 : programma.uitgang();
    }

    // Whether the black screen's scene moves on, for some pictures.
    [[nodiscard]] bool tekentDoor(const Programma& eigenaar) const {
        constexpr int kBeelden = 10;
        QImage laatste = server_.picture(server_.screen().root);
        int nieuwe = 0;
        return until([&] {
                   QImage nu = server_.picture(server_.screen().root);
                   if (nu != laatste) ++nieuwe;
                   laatste = std::move(nu);
                   return nieuwe >= kBeelden || !eigenaar.loopt();
               }) &&
               eigenaar.loopt();
    }

    // From the start of the music until the harm is done, and some pictures of what follows.
    void draai(const SocketHarm& kwaad) const {
        const HostileSocket deur(geluid_.socket(), kwaad);
        ASSERT_TRUE(deur.isRunning());
        Programma eigenaar(server_.display(), bureauPad());
        zetOmgeving(eigenaar, deur);
        eigenaar.start({QStringLiteral("--muziek=aan"), QStringLiteral("--toon-zwart")});
        EXPECT_TRUE(until([&] { return deur.deeds() > 0 || !eigenaar.loopt(); }));
        EXPECT_TRUE(tekentDoor(eigenaar)) << eigenaar.fouten().constData();
        EXPECT_EQ(vraag(deur, "--stand"), 0);
        EXPECT_EQ(vraag(deur, "--stop"), 0);
        EXPECT_TRUE(eigenaar.wacht()) << "hangt";
        EXPECT_FALSE(eigenaar.doorSignaal()) << eigenaar.uitgang();
        EXPECT_EQ(eigenaar.uitgang(), 0);
        // The sound server's own library reports nonsense in its own words.
        const QByteArray fouten = eigenaar.fouten();
        EXPECT_TRUE(fouten.isEmpty() || kwaad.garbage > 0.0) << fouten.constData();
    }

    void draaiZaden(const std::function<SocketHarm(std::mt19937&)>& kwaad, int aantal) const {
        for (const int zaad : steun::zaden(aantal)) {
            SCOPED_TRACE("zaad " + std::to_string(zaad));
            std::mt19937 toeval(static_cast<std::uint32_t>(zaad));
            SocketHarm een = kwaad(toeval);
            een.seed = static_cast<std::uint32_t>(zaad);
            draai(een);
        }
    }
};

std::size_t bytes(std::mt19937& toeval, double van, double tot) {
    return static_cast<std::size_t>(
        std::pow(10.0, std::uniform_real_distribution(van, tot)(toeval)));
}

TEST_F(VijandigGeluid, AServerThatIsSlow) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return SocketHarm{.delays = 0.5,
                              .mostDelay = std::uniform_real_distribution(0.01, 0.5)(toeval)};
        },
        1);
}

TEST_F(VijandigGeluid, AServerThatFallsSilent) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return SocketHarm{.muteAfter = toeval() % 2 == 0 ? 0 : bytes(toeval, 1.0, 4.0)};
        },
        2);
}

TEST_F(VijandigGeluid, AServerThatBreaksOff) {
    draaiZaden([](std::mt19937& toeval) { return SocketHarm{.cutAfter = bytes(toeval, 0.0, 5.0)}; },
               3);
}

TEST_F(VijandigGeluid, AServerThatTalksNonsense) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return SocketHarm{
                .garbage = std::pow(10.0, std::uniform_real_distribution(-3.5, -0.7)(toeval))};
        },
        3);
}

}  // namespace
