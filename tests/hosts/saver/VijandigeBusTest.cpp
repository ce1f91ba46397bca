// SPDX-License-Identifier: MIT
// Both programs whole, where the session bus is hostile: a connection that breaks at any
// byte, answers in which bytes have become others. The saver shows its pictures all the
// same; the desktop's program ends with 0, or with 1 and one line.
//
// BRIXTEL_VIJANDIG=N tries N seeds of each kind, from BRIXTEL_VIJANDIG_VAN on.
#include <gtest/gtest.h>
#include <signal.h>

#include <QRegularExpression>
#include <array>
#include <cmath>
#include <functional>
#include <random>

#include "tests/hosts/saver/Programma.h"
#include "tests/hosts/saver/Zaden.h"
#include "tests/support/DBusDaemon.h"
#include "tests/support/HostileSocket.h"

using brixtel::bureauPad;
using brixtel::Programma;
using brixtel::programmaPad;

namespace {

// The time that a lost answer takes, 25 seconds, and then some.
constexpr int kGeduld = 60'000;  // milliseconds until the program counts as hanging

class VijandigeBus : public testing::Test {
  protected:
    Xvfb server_{"320x240x24"};
    DBusDaemon bus_;

    void SetUp() override {
        ASSERT_TRUE(server_.isRunning());
        ASSERT_TRUE(bus_.address().startsWith(QStringLiteral("unix:path=")));
    }
    [[nodiscard]] std::string pad() const {
        return bus_.address().section(u'=', 1).section(u',', 0, 0).toStdString();
    }

    // Returns the number of deeds.
    std::uint64_t draai(const SocketHarm& kwaad) const {
        const HostileSocket deur(pad(), kwaad);
        EXPECT_TRUE(deur.isRunning());
        std::mt19937 toeval(kwaad.seed);
        const auto welk = toeval() % 4;
        Programma programma(server_.display(), welk == 0 ? programmaPad() : bureauPad());
        programma.zet(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"),
                      QStringLiteral("unix:path=") + QString::fromStdString(deur.path()));
        const std::array<QStringList, 4> woorden{
            QStringList{QStringLiteral("--keuze=regen"), QStringLiteral("--venster=96x64"),
                        QStringLiteral("--seconden=0.1")},
            QStringList{QStringLiteral("--stand")}, QStringList{QStringLiteral("--sluit-alles")},
            QStringList{QStringLiteral("--dienst")}};
        SCOPED_TRACE(woorden.at(welk).first().toStdString());
        programma.start(woorden.at(welk));
        // An owner whose bus holds stays until it is told to end.
        if (welk == 3 && !programma.wacht(1000))
            ::kill(static_cast<pid_t>(programma.nummer()), SIGTERM);
        EXPECT_TRUE(programma.wacht(kGeduld)) << "hangt";
        beoordeel(programma, welk);
        return deur.deeds();
    }

    void draaiZaden(const std::function<SocketHarm(std::mt19937&)>& kwaad, int aantal) const {
        std::uint64_t daden = 0;
        for (const int zaad : steun::zaden(aantal)) {
            SCOPED_TRACE("zaad " + std::to_string(zaad));
            std::mt19937 toeval(static_cast<std::uint32_t>(zaad));
            SocketHarm een = kwaad(toeval);
            een.seed = static_cast<std::uint32_t>(zaad);
            daden += draai(een);
        }
        EXPECT_GT(daden, 0U);
    }

  private:
    static void beoordeel(Programma& programma, std::size_t welk) {
        // libdbus says so itself where Qt asks it to wait for an answer without a question.
        static const QRegularExpression vanLibdbus(
            QStringLiteral("dbus\\[\\d+\\]: arguments to dbus_pending_call_block\\(\\)[^\n]*\n"
                           "This is normally a bug[^\n]*\n\\s*"));
        const QByteArray fouten =
            QString::fromLocal8Bit(programma.fouten()).remove(vanLibdbus).toLocal8Bit();
        if (programma.doorSignaal()) {
            EXPECT_TRUE(welk == 3 && programma.uitgang() == SIGTERM)
                << "signaal " << programma.uitgang() << ' ' << fouten.constData();
            return;
        }
        EXPECT_LE(programma.uitgang(), welk == 0 ? 0 : 1) << fouten.constData();
        if (programma.uitgang() == 0) return;
        EXPECT_EQ(fouten.count('\n'), 1) << fouten.constData();
        EXPECT_TRUE(fouten.startsWith("brixtel-bureau: ")) << fouten.constData();
    }
};

TEST_F(VijandigeBus, AConnectionThatBreaksAtAnyByte) {
    draaiZaden(
        [](std::mt19937& toeval) {
            const double macht = std::uniform_real_distribution(0.0, 3.6)(toeval);
            return SocketHarm{.cutAfter = static_cast<std::size_t>(std::pow(10.0, macht))};
        },
        20);
}

TEST_F(VijandigeBus, AnswersWithOtherBytes) {
    draaiZaden(
        [](std::mt19937& toeval) {
            const double macht = std::uniform_real_distribution(-3.0, -1.0)(toeval);
            return SocketHarm{.garbage = std::pow(10.0, macht)};
        },
        12);
}

}  // namespace
