// SPDX-License-Identifier: MIT
// Both programs whole, where the session bus is hostile: a connection that breaks at any
// byte, answers that come late or never, in which bytes have become others, that are not
// whole, or that others sent. The saver shows its pictures all the same; the desktop's
// program ends with 0, or with 1 and one line.
//
// BRIXTEL_VIJANDIG=N tries N seeds of each kind, from BRIXTEL_VIJANDIG_VAN on.
#include <gtest/gtest.h>
#include <signal.h>

#include <QRegularExpression>
#include <array>
#include <cmath>
#include <functional>
#include <limits>
#include <list>
#include <map>
#include <memory>
#include <random>

#include "platform/time/MediaClock.h"
#include "tests/hosts/saver/Programma.h"
#include "tests/hosts/saver/Zaden.h"
#include "tests/support/BusTamper.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/HostileSocket.h"
#include "tests/support/StandInOwner.h"

using brixtel::bureauPad;
using brixtel::Programma;
using brixtel::programmaPad;

namespace {

// The time that the lost answers of one start take, and then some.
constexpr double kGeduld = 90.0;  // seconds until the program counts as hanging
constexpr std::size_t kNaastElkaar = 8;

struct Geval {
    const char* woorden;
    bool isSaver = false;
    bool blijft = false;  // an owner, where it finds none, stays until it is told to end
};

constexpr std::array kGevallen{
    Geval{.woorden = "--keuze=regen --venster=96x64 --seconden=0.1", .isSaver = true},
    Geval{.woorden = "--keuze=regen --seconden=0.1", .isSaver = true},
    Geval{.woorden = "--stand"},
    Geval{.woorden = "--sluit-alles"},
    Geval{.woorden = "--stop"},
    Geval{.woorden = "--paneel", .blijft = true},
    Geval{.woorden = "--wissel-regen", .blijft = true},
    Geval{.woorden = "--toon-zwart", .blijft = true},
    Geval{.woorden = "--dienst", .blijft = true},
};

struct Kwaad {
    SocketHarm deur;
    BusHarm berichten;
};

class VijandigeBus : public testing::Test {
  protected:
    Xvfb server_{"320x240x24"};

    void SetUp() override { ASSERT_TRUE(server_.isRunning()); }

    [[nodiscard]] static std::unique_ptr<HostileSocket> opent(const DBusDaemon& bus,
                                                              const Kwaad& kwaad) {
        std::function<SocketFilter()> filters;
        const BusHarm& harm = kwaad.berichten;
        if (harm.drops + harm.truncates + harm.stretches + harm.strangers > 0.0)
            filters = [kwaad, zaad = kwaad.deur.seed]() mutable {
                const auto knoeier = std::make_shared<BusTamper>(kwaad.berichten, zaad++);
                return
                    [knoeier](std::span<const std::uint8_t> bytes) { return knoeier->pass(bytes); };
            };
        return std::make_unique<HostileSocket>(bus.path().toStdString(), kwaad.deur, filters);
    }

    [[nodiscard]] std::unique_ptr<Programma> start(const Geval& geval,
                                                   const HostileSocket& deur) const {
        auto programma = std::make_unique<Programma>(server_.display(),
                                                     geval.isSaver ? programmaPad() : bureauPad());
        programma->zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                       QStringLiteral("unix:path=") + QString::fromStdString(deur.path()));
        programma->zet(QStringLiteral("QT_QUICK_BACKEND"), QStringLiteral("software"));
        programma->zet(QStringLiteral("PULSE_SERVER"), QStringLiteral("unix:/nonexistent"));
        programma->start(QString::fromLatin1(geval.woorden).split(u' '));
        return programma;
    }

    // One run beside others: on a bus of its own, behind a socket, where an owner answers or
    // none does.
    struct Loop {
        int zaad;
        const Geval* geval;
        std::unique_ptr<DBusDaemon> bus = std::make_unique<DBusDaemon>();
        std::unique_ptr<HostileSocket> deur;
        std::unique_ptr<StandInOwner> eigenaar;
        std::unique_ptr<Programma> programma;
        double begin = 0.0, tot = 0.0;  // an owner is told to end after this time
        bool gestopt = false, klaar = false;

        [[nodiscard]] bool blijft() const { return geval->blijft && !eigenaar; }
    };

    [[nodiscard]] Loop begin(int zaad, const std::function<Kwaad(std::mt19937&)>& maak) const {
        std::mt19937 toeval(static_cast<std::uint32_t>(zaad));
        Kwaad kwaad = maak(toeval);
        kwaad.deur.seed = static_cast<std::uint32_t>(zaad);
        Loop loop{.zaad = zaad, .geval = &kGevallen.at(toeval() % kGevallen.size())};
        loop.deur = opent(*loop.bus, kwaad);
        EXPECT_TRUE(loop.deur->isRunning());
        if (toeval() % 2 == 0) loop.eigenaar = std::make_unique<StandInOwner>(loop.bus->address());
        loop.begin = klok_.now();
        loop.tot = loop.begin + std::uniform_real_distribution(0.1, 1.0)(toeval);
        loop.programma = start(*loop.geval, *loop.deur);
        return loop;
    }

    // Whether it has ended.
    bool volg(Loop& loop) {
        if (loop.klaar) return true;
        const double nu = klok_.now();
        if (loop.blijft() && nu > loop.tot && !loop.gestopt && loop.programma->loopt()) {
            ::kill(static_cast<pid_t>(loop.programma->nummer()), SIGTERM);
            loop.gestopt = true;
        }
        const bool hangt = nu - loop.begin > kGeduld;
        if (loop.programma->loopt() && !hangt) return false;
        SCOPED_TRACE("zaad " + std::to_string(loop.zaad));
        SCOPED_TRACE(loop.geval->woorden);
        loop.klaar = true;
        langste_ = std::max(langste_, nu - loop.begin);
        EXPECT_FALSE(hangt) << "hangt";
        if (!hangt) beoordeel(*loop.programma, *loop.geval, loop.blijft());
        daden_ += loop.deur->deeds();
        return true;
    }

    void draaiZaden(const std::function<Kwaad(std::mt19937&)>& kwaad, int aantal) {
        const std::vector<int> zaden = steun::zaden(aantal);
        std::list<Loop> lopen;
        std::size_t volgende = 0;
        const auto stap = [&] {
            lopen.remove_if([this](Loop& een) { return volg(een); });
            if (volgende < zaden.size() && lopen.size() < kNaastElkaar)
                lopen.push_back(begin(zaden[volgende++], kwaad));
            return lopen.empty() && volgende == zaden.size();
        };
        EXPECT_TRUE(until(stap, std::numeric_limits<int>::max()));
        EXPECT_GT(daden_, 0U);
        std::printf("daden %llu; langste %.1f s\n", static_cast<unsigned long long>(daden_),
                    langste_);
        for (const auto& [wat, keren] : uitkomsten_)
            std::printf("  %5d %s\n", keren, wat.constData());
    }

    void beoordeel(Programma& programma, const Geval& geval, bool blijft) {
        // libdbus says so itself where Qt asks it to wait for an answer without a question.
        static const QRegularExpression vanLibdbus(
            QStringLiteral("dbus\\[\\d+\\]: arguments to dbus_pending_call_block\\(\\)[^\n]*\n"
                           "This is normally a bug[^\n]*\n\\s*"));
        const QByteArray fouten =
            QString::fromLocal8Bit(programma.fouten()).remove(vanLibdbus).toLocal8Bit();
        if (programma.doorSignaal()) {
            EXPECT_TRUE(blijft && programma.uitgang() == SIGTERM)
                << "signaal " << programma.uitgang() << ' ' << fouten.constData();
            ++uitkomsten_["door het signaal"];
            return;
        }
        ++uitkomsten_[programma.uitgang() == 0 ? QByteArray("uitgang 0") : fouten.trimmed()];
        EXPECT_LE(programma.uitgang(), geval.isSaver ? 0 : 1) << fouten.constData();
        if (programma.uitgang() == 0) {
            EXPECT_EQ(fouten, QByteArray());
            return;
        }
        EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
        EXPECT_TRUE(fouten.startsWith("brixtel-bureau: ")) << fouten.constData();
    }

  private:
    const platform::SystemClock klok_;
    std::uint64_t daden_ = 0;
    double langste_ = 0.0;  // seconds
    std::map<QByteArray, int> uitkomsten_;
};

// Ten to a power that lies evenly between two.
double macht(std::mt19937& toeval, double van, double tot) {
    return std::pow(10.0, std::uniform_real_distribution(van, tot)(toeval));
}

TEST_F(VijandigeBus, AConnectionThatBreaksAtAnyByte) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return Kwaad{.deur = {.cutAfter = static_cast<std::size_t>(macht(toeval, 0.0, 3.8))}};
        },
        10);
}

TEST_F(VijandigeBus, AnswersWithOtherBytes) {
    draaiZaden(
        [](std::mt19937& toeval) { return Kwaad{.deur = {.garbage = macht(toeval, -3.0, -1.0)}}; },
        8);
}

TEST_F(VijandigeBus, AnswersThatComeLate) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return Kwaad{.deur = {.delays = 0.5, .mostDelay = macht(toeval, -2.0, -0.3)}};
        },
        8);
}

TEST_F(VijandigeBus, MessagesThatAreTooShortOrTooLongOrNeverCome) {
    draaiZaden(
        [](std::mt19937& toeval) {
            BusHarm kwaad;
            std::array{&kwaad.truncates, &kwaad.stretches, &kwaad.drops}.at(toeval() % 3)[0] =
                macht(toeval, -1.5, -0.3);
            return Kwaad{.deur = {}, .berichten = kwaad};
        },
        9);
}

TEST_F(VijandigeBus, AnswersThatOthersSent) {
    draaiZaden(
        [](std::mt19937& toeval) {
            return Kwaad{.berichten = {.strangers = macht(toeval, -1.0, 0.0)}};
        },
        8);
}

// A bus without a word from the beginning, for the owner alone, or for the owner after its
// first words. All start at once: each waits.
TEST_F(VijandigeBus, SilenceIsToldOfByEveryCommand) {
    constexpr std::size_t kBegroeting = 160;  // bytes: the handshake and the connection's name
    std::list<Loop> lopen;
    const auto zwijg = [&](const Geval& geval, const SocketHarm& kwaad) {
        Loop& een = lopen.emplace_back(Loop{.zaad = 0, .geval = &geval});
        een.deur = opent(*een.bus, {.deur = kwaad, .berichten = {}});
        een.programma = start(geval, *een.deur);
    };
    for (const Geval& geval : kGevallen) {
        zwijg(geval, {.muteAfter = 0});
        if (!geval.blijft) continue;
        zwijg(geval, {.spared = 1, .muteAfter = 0});
        zwijg(geval, {.spared = 1, .muteAfter = kBegroeting});
    }
    const auto loopt = [](const Loop& een) { return een.programma->loopt(); };
    until([&] { return std::none_of(lopen.begin(), lopen.end(), loopt); },
          static_cast<int>(kGeduld * 1000));
    for (const Loop& een : lopen) {
        SCOPED_TRACE(een.geval->woorden);
        ASSERT_FALSE(een.programma->loopt()) << "hangt";
        EXPECT_FALSE(een.programma->doorSignaal());
        EXPECT_EQ(een.programma->uitgang(), een.geval->isSaver ? 0 : 1);
        EXPECT_EQ(een.programma->fouten().toStdString(),
                  een.geval->isSaver ? "" : "brixtel-bureau: de sessiebus antwoordt niet\n");
    }
}

}  // namespace
