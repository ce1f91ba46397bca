// SPDX-License-Identifier: MIT
// The failures of the tool.
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <QCoreApplication>
#include <filesystem>

#include "tests/connections/WachtOpstelling.h"

using brixtel::Lijn;
using brixtel::VerbindingWacht;

namespace {

// Seconds for a tool that ends by itself, on any machine.
constexpr double kGeduld = 300.0;

class Fout : public steun::WachtOpstelling {
  protected:
    // After a measurement that found something, one with this tool finds nothing.
    void verwachtLeeg(const std::string& lsof) {
        const std::string pad = (map_ / "lsof").string();
        std::filesystem::create_symlink(steun::kStandin, pad);
        auto& wacht = maakWacht(pad);
        wacht.gebruik("a", true, 1.0);
        ASSERT_TRUE(wachtOp(1));
        EXPECT_EQ(wacht.totaal().waarde(), 1);
        std::filesystem::remove(pad);
        std::filesystem::create_symlink(lsof, pad);
        klok_.advance(1.0);
        ASSERT_TRUE(wachtOp(2));
        EXPECT_TRUE(wacht.lijnen().waarde().empty());
        EXPECT_EQ(wacht.totaal().waarde(), 0);
    }

    std::vector<Lijn> meet(const std::string& lsof) {
        return VerbindingWacht::meet({.tabel = *tabel_, .lsof = lsof});
    }
    std::optional<std::vector<Lijn>> probeer(const std::string& lsof) {
        return VerbindingWacht::probeer({.tabel = *tabel_, .lsof = lsof});
    }
};

const std::vector<Lijn> kEenLijn{{{"US", 39.75, -98.5}, {"a"}, 1}};

TEST_F(Fout, AMissingToolGivesNothing) {
    verwachtLeeg("/no/such/lsof");
}

TEST_F(Fout, AToolThatMayNotBeExecutedGivesNothing) {
    const std::string pad = map_.script("niet", "echo x");
    chmod(pad.c_str(), 0644);
    verwachtLeeg(pad);
}

TEST_F(Fout, AToolThatIsNoProgramGivesNothing) {
    const std::string pad = map_.bestand("tekst", "gewoon tekst\n");
    chmod(pad.c_str(), 0755);
    verwachtLeeg(pad);
}

TEST_F(Fout, AFailingToolGivesNothing) {
    verwachtLeeg(map_.script("fout", "exit 1"));
}

TEST_F(Fout, ACrashingToolGivesNothing) {
    verwachtLeeg(map_.script("dood", "kill -9 $$"));
}

TEST_F(Fout, WhatAFailingToolDidWriteCounts) {
    EXPECT_EQ(meet(map_.script("half", "echo ca; echo 'n->8.8.8.8:1'; exit 1")), kEenLijn);
    EXPECT_EQ(meet(map_.script("niet", "echo ca; echo 'n->8.8.8.8:1'; exit 127")), kEenLijn);
}

TEST_F(Fout, WhatTheToolSaysOnStandardErrorIsNotRead) {
    EXPECT_EQ(meet(map_.script("fout", "echo ca; echo 'n->9.9.9.9:1' >&2; echo 'n->8.8.8.8:1'")),
              kEenLijn);
}

TEST_F(Fout, InvalidUtf8IsReplaced) {
    const auto lijnen =
        meet(map_.script("vreemd", R"(printf 'ca\377b\nn->8.8.8.8:1\n\377\376\n')"));
    EXPECT_EQ(lijnen, (std::vector<Lijn>{{{"US", 39.75, -98.5}, {"a\uFFFDb"}, 1}}));
}

// Each byte is a write of its own, so that lines and characters arrive in pieces.
TEST_F(Fout, WhatComesInPiecesIsRead) {
    const auto lijnen = meet(map_.script(
        "stukken", R"(for deel in c a '\303' '\251' '\n' n - '>' 8 . 8 . 8 . 8 : 1 '\n'; do
  printf "$deel"
done)"));
    EXPECT_EQ(lijnen, (std::vector<Lijn>{{{"US", 39.75, -98.5}, {"a\u00E9"}, 1}}));
}

TEST_F(Fout, ALineOfSixtyMegabytesIsRead) {
    const std::string pad =
        map_.script("lang", "echo ca; printf n; head -c 60000000 /dev/zero; echo '->8.8.8.8:1'");
    EXPECT_EQ(VerbindingWacht::probeer({.tabel = *tabel_, .lsof = pad, .seconden = kGeduld}),
              std::vector<Lijn>(kEenLijn));
}

TEST_F(Fout, AToolThatWritesMoreThanItMayGivesNothing) {
    // Three bytes for the program, thirteen for the line, and the rest.
    const auto aantal = VerbindingWacht::kMeesteBytes - 16;
    for (const std::size_t meer : {0U, 1U}) {
        const std::string pad =
            map_.script("veel", "echo ca; echo 'n->8.8.8.8:1'; head -c " +
                                    std::to_string(aantal + meer) + " /dev/zero");
        const auto uit =
            VerbindingWacht::probeer({.tabel = *tabel_, .lsof = pad, .seconden = kGeduld});
        EXPECT_EQ(uit.has_value(), meer == 0);
    }
}

TEST_F(Fout, AToolThatWritesWithoutEndIsEndedAndGivesNothing) {
    const auto voor = steun::geheugenInGebruik();
    const auto uit = probeer(map_.script("eindeloos", "echo ca; exec cat /dev/zero"));
    EXPECT_FALSE(uit);
    EXPECT_FALSE(steun::heeftKinderen());
    EXPECT_LT(steun::geheugenInGebruik(), voor + 1'000'000U);
}

TEST_F(Fout, AToolThatTakesTooLongIsEndedAndGivesNothing) {
    for (const char* hoe : {"exec cat < \"$0\".buis", "exec >&-; exec cat < \"$0\".buis"}) {
        const std::string pad = map_.script("traag", hoe);
        mkfifo((pad + ".buis").c_str(), 0600);
        EXPECT_FALSE(VerbindingWacht::probeer({.tabel = *tabel_, .lsof = pad, .seconden = 0.05}))
            << hoe;
        EXPECT_FALSE(steun::heeftKinderen());
    }
}

TEST_F(Fout, NotToHaveMeasuredIsToldFromNone) {
    EXPECT_FALSE(probeer("/no/such/lsof"));
    EXPECT_FALSE(probeer(map_.script("dood", "kill -9 $$")));
    EXPECT_FALSE(probeer(map_.script("fout", "exit 2")));
    // lsof ends with status 1 where it finds no connection.
    EXPECT_EQ(probeer(map_.script("geen", "exit 1")), std::vector<Lijn>());
    EXPECT_EQ(probeer(map_.script("niets", "exit 0")), std::vector<Lijn>());
    EXPECT_EQ(probeer(map_.script("half", "echo ca; echo 'n->8.8.8.8:1'; exit 2")),
              std::vector<Lijn>(kEenLijn));
}

TEST_F(Fout, WithoutAnyDescriptorToSpareThereIsNothing) {
    rlimit voor{};
    getrlimit(RLIMIT_NOFILE, &voor);
    (void)(*tabel_).land("8.8.8.8");
    const rlimit geen{0, voor.rlim_max};
    setrlimit(RLIMIT_NOFILE, &geen);
    EXPECT_TRUE(meet(steun::kStandin).empty());
    setrlimit(RLIMIT_NOFILE, &voor);
    EXPECT_EQ(meet(steun::kStandin).size(), 1U);
}

// A watcher whose tool hangs, once it does.
class Hangend : public Fout {
  protected:
    VerbindingWacht& maakHangend(const char* hoe) {
        const std::string buis = (map_ / "buis").string();
        mkfifo(buis.c_str(), 0600);
        qputenv("STANDIN_HANGT", hoe);
        qputenv("STANDIN_GESTART", buis.c_str());
        auto& wacht = maakWacht();
        wacht.gebruik("a", true, 1.0);
        std::ifstream(buis) >> pid_;  // comes when the tool has started
        // The stand-in counts its later starts.
        qputenv("STANDIN_GESTART", gestart_.c_str());
        return wacht;
    }
    [[nodiscard]] bool leeft() const { return kill(pid_, 0) == 0; }

    pid_t pid_ = 0;
};

TEST_F(Hangend, NothingPilesUpBehindIt) {
    maakHangend("ja");
    const long descriptors = steun::descriptors();
    for (int i = 0; i < 1000; ++i)
        klok_.advance(1.0);
    QCoreApplication::processEvents();
    EXPECT_TRUE(leeft());
    EXPECT_EQ(gepubliceerd_, 0);
    EXPECT_EQ(steun::descriptors(), descriptors);
    // A measurement queued behind the first would run now.
    qunsetenv("STANDIN_HANGT");
    kill(pid_, SIGTERM);
    ASSERT_TRUE(wachtOp(1));
    leeg();
    EXPECT_EQ(starts(), 0);
    EXPECT_EQ(gepubliceerd_, 1);
}

TEST_F(Hangend, StoppingAndStartingAgainDoesNotPileUpEither) {
    auto& wacht = maakHangend("ja");
    for (int i = 0; i < 100; ++i) {
        wacht.gebruik("a", false);
        wacht.gebruik("a", true, 1.0);
    }
    EXPECT_TRUE(leeft());
    qunsetenv("STANDIN_HANGT");
    kill(pid_, SIGTERM);
    ASSERT_TRUE(wachtOp(1));
    leeg();
    EXPECT_EQ(starts(), 0);
}

TEST_F(Hangend, MeasuringGoesOnWhenItEndsAfterAll) {
    auto& wacht = maakHangend("ja");
    qunsetenv("STANDIN_HANGT");
    klok_.advance(5.0);
    kill(pid_, SIGTERM);
    ASSERT_TRUE(wachtOp(1));
    EXPECT_EQ(wacht.totaal().waarde(), 0);
    klok_.advance(1.0);
    ASSERT_TRUE(wachtOp(2));
    EXPECT_EQ(wacht.totaal().waarde(), 1);
}

TEST_F(Hangend, ItIsEndedWithTheWatcher) {
    maakHangend("ja");
    EXPECT_TRUE(leeft());
    wacht_.reset();
    EXPECT_FALSE(leeft());
    QCoreApplication::processEvents();
    EXPECT_EQ(gepubliceerd_, 0);
}

TEST_F(Hangend, ItIsEndedWithTheWatcherAlsoWithItsOutputClosed) {
    maakHangend("dicht");
    EXPECT_TRUE(leeft());
    wacht_.reset();
    EXPECT_FALSE(leeft());
}

}  // namespace
