// SPDX-License-Identifier: MIT
#include "hosts/saver/LopendeSaver.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

using brixtel::LopendeSaver;
using namespace std::chrono_literals;

namespace {

class Lopend : public testing::Test {
  protected:
    QTemporaryDir map;
    const QString scherm = QStringLiteral(":7/x");
    const QString pad = map.filePath(QStringLiteral("brixtel-saver-_7_x"));

    // A process that has the place, and waits for a signal.
    pid_t houder(bool hoortSigterm = true) {
        int klaar[2];
        EXPECT_EQ(pipe(klaar), 0);
        const pid_t kind = fork();
        if (kind == 0) {
            if (!hoortSigterm) signal(SIGTERM, SIG_IGN);
            LopendeSaver saver(map.path(), scherm);
            const char gelukt = saver.neem() ? 'j' : 'n';
            if (write(klaar[1], &gelukt, 1) == 1) pause();
            _exit(0);
        }
        char gelukt = 0;
        EXPECT_EQ(read(klaar[0], &gelukt, 1), 1);
        EXPECT_EQ(gelukt, 'j');
        close(klaar[0]);
        close(klaar[1]);
        return kind;
    }
    // A process that is no saver, and whose number stands in the file.
    pid_t vreemdeMetNummer() {
        const pid_t kind = fork();
        if (kind == 0) {
            pause();
            _exit(0);
        }
        QFile bestand(pad);
        EXPECT_TRUE(bestand.open(QIODevice::WriteOnly));
        bestand.write(QByteArray::number(kind));
        return kind;
    }
    static int signaalVan(pid_t kind) {
        int stand = 0;
        EXPECT_EQ(waitpid(kind, &stand, 0), kind);
        return WIFSIGNALED(stand) ? WTERMSIG(stand) : 0;
    }
};

TEST_F(Lopend, OneDisplayHasOneSaver) {
    LopendeSaver een(map.path(), scherm), nogEen(map.path(), scherm);
    LopendeSaver elders(map.path(), QStringLiteral(":8"));
    EXPECT_TRUE(een.neem());
    EXPECT_FALSE(nogEen.neem());
    EXPECT_TRUE(elders.neem());
}

TEST_F(Lopend, ThePlaceIsFreeWhenItsSaverIsGone) {
    { EXPECT_TRUE(LopendeSaver(map.path(), scherm).neem()); }
    EXPECT_TRUE(LopendeSaver(map.path(), scherm).neem());
    const pid_t kind = houder();
    EXPECT_FALSE(LopendeSaver(map.path(), scherm).neem());
    kill(kind, SIGKILL);
    signaalVan(kind);
    EXPECT_TRUE(LopendeSaver(map.path(), scherm).neem());
}

TEST_F(Lopend, AnotherCallEndsItBySigtermAndWaitsForThat) {
    const pid_t kind = houder();
    LopendeSaver ander(map.path(), scherm);
    EXPECT_EQ(ander.beeindig(20s), QString());
    // The saver has ended already: waitpid waits for nothing.
    int stand = 0;
    EXPECT_EQ(waitpid(kind, &stand, WNOHANG), kind);
    EXPECT_TRUE(WIFSIGNALED(stand));
    EXPECT_EQ(WTERMSIG(stand), SIGTERM);
}

TEST_F(Lopend, OneThatDoesNotEndIsToldOf) {
    const pid_t kind = houder(false);
    LopendeSaver ander(map.path(), scherm);
    EXPECT_NE(ander.beeindig(0ms), QString());
    kill(kind, SIGKILL);
    signaalVan(kind);
}

TEST_F(Lopend, WhereNoneRunsNothingHappens) {
    EXPECT_EQ(LopendeSaver(map.path(), scherm).beeindig(0ms), QString());
    // The number of one that went without a word, which is another's now.
    const pid_t vreemde = vreemdeMetNummer();
    EXPECT_EQ(LopendeSaver(map.path(), scherm).beeindig(0ms), QString());
    EXPECT_EQ(kill(vreemde, 0), 0);
    kill(vreemde, SIGKILL);
    EXPECT_EQ(signaalVan(vreemde), SIGKILL);
}

// The call may come between a saver's start and its lock.
TEST_F(Lopend, ASaverThatIsStillStartingGivesUp) {
    LopendeSaver ander(map.path(), scherm);
    int keren = 0;
    EXPECT_EQ(ander.beeindig(0ms,
                             [&] {
                                 ++keren;
                                 EXPECT_FALSE(LopendeSaver(map.path(), scherm).neem());
                             }),
              QString());
    EXPECT_EQ(keren, 1);
    EXPECT_TRUE(LopendeSaver(map.path(), scherm).neem());
}

// The call may come between a saver's lock and the number it writes.
TEST_F(Lopend, ASaverThatHasNotWrittenItsNumberIsWaitedForAndEnded) {
    const pid_t kind = houder();
    ASSERT_TRUE(QFile::resize(pad, 0));
    int keren = 0;
    EXPECT_EQ(LopendeSaver(map.path(), scherm)
                  .beeindig(20s,
                            [&] {
                                ++keren;
                                QFile bestand(pad);
                                ASSERT_TRUE(bestand.open(QIODevice::ReadWrite));
                                bestand.write(QByteArray::number(kind));
                            }),
              QString());
    EXPECT_EQ(keren, 1);
    int stand = 0;
    const bool weg = waitpid(kind, &stand, WNOHANG) == kind;
    EXPECT_TRUE(weg);
    if (!weg) {
        kill(kind, SIGKILL);
        signaalVan(kind);
    }
}

// A holder that never writes a number is asked for it once.
TEST_F(Lopend, AHolderWithoutANumberIsLeftAlone) {
    const pid_t kind = houder();
    ASSERT_TRUE(QFile::resize(pad, 0));
    int keren = 0;
    EXPECT_EQ(LopendeSaver(map.path(), scherm).beeindig(20s, [&] { ++keren; }), QString());
    EXPECT_EQ(keren, 1);
    EXPECT_EQ(waitpid(kind, nullptr, WNOHANG), 0);
    kill(kind, SIGKILL);
    signaalVan(kind);
}

// Two calls beside one another, after a saver that was killed.
TEST_F(Lopend, ANumberOfAKilledSaverIsNobodysWhileAnotherCallHasThePlace) {
    const pid_t vreemde = vreemdeMetNummer();
    LopendeSaver een(map.path(), scherm), ander(map.path(), scherm);
    EXPECT_EQ(een.beeindig(0ms, [&] { EXPECT_EQ(ander.beeindig(20s), QString()); }), QString());
    EXPECT_EQ(waitpid(vreemde, nullptr, WNOHANG), 0);
    kill(vreemde, SIGKILL);
    signaalVan(vreemde);
}

TEST_F(Lopend, NothingIsLeftBehind) {
    const auto leeg = [this] { return QDir(map.path()).isEmpty(); };
    LopendeSaver een(map.path(), scherm), ander(map.path(), scherm);
    EXPECT_TRUE(een.neem());
    EXPECT_FALSE(leeg());
    EXPECT_FALSE(ander.neem());
    een.laatLos();
    EXPECT_TRUE(leeg());
    { EXPECT_TRUE(ander.neem()); }
    ander.laatLos();
    EXPECT_EQ(LopendeSaver(map.path(), scherm).beeindig(0ms), QString());
    EXPECT_TRUE(leeg());
    // Where no display is named.
    EXPECT_TRUE(LopendeSaver(map.path(), {}).neem());
    EXPECT_TRUE(leeg());
    // The file of a saver that was killed.
    const pid_t kind = houder();
    kill(kind, SIGKILL);
    signaalVan(kind);
    EXPECT_FALSE(leeg());
    EXPECT_EQ(ander.beeindig(0ms), QString());
    EXPECT_TRUE(leeg());
}

// Another process opened the file before its holder removed it.
TEST_F(Lopend, ALockOnARemovedFileIsNone) {
    LopendeSaver een(map.path(), scherm), ander(map.path(), scherm), derde(map.path(), scherm);
    EXPECT_TRUE(een.neem());
    EXPECT_FALSE(ander.neem());
    een.laatLos();
    EXPECT_TRUE(derde.neem());
    EXPECT_FALSE(ander.neem());
    derde.laatLos();
    EXPECT_TRUE(ander.neem());
}

TEST_F(Lopend, WithoutAFolderNobodyIsKnownAndEveryOneShows) {
    LopendeSaver een({}, scherm), nogEen({}, scherm);
    EXPECT_TRUE(een.neem());
    EXPECT_TRUE(nogEen.neem());
    EXPECT_EQ(nogEen.beeindig(0ms), QString());
}

}  // namespace
