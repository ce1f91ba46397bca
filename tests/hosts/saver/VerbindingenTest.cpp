// SPDX-License-Identifier: MIT
#include "hosts/saver/Verbindingen.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tests/connections/Tabellen.h"
#include "tests/support/TijdelijkeMap.h"

using brixtel::toonVerbindingen;

namespace {

class Verbindingen : public testing::Test {
  protected:
    // With this in lsof's place; exits with 0, or 1 after saying what is wrong.
    [[noreturn]] void draai(const std::string& lsof, const char* naar = nullptr) {
        steun::Tabel tabel(steun::kleineTabel());
        draai(lsof, *tabel, naar);
    }
    [[noreturn]] void draai(const std::string& lsof, brixtel::LandenTabel& tabel,
                            const char* naar = nullptr) {
        if (naar && !std::freopen(naar, "w", stdout)) std::abort();
        const QString mis = toonVerbindingen(false, {.tabel = tabel, .lsof = lsof});
        if (!mis.isEmpty()) std::fprintf(stderr, "%s\n", qUtf8Printable(mis));
        std::exit(mis.isEmpty() ? 0 : 1);
    }

    // A tool that hangs in a process of its own, after it has sent its caller a signal.
    [[nodiscard]] std::string hangend(const char* signaal) const {
        const std::string pad = (map_ / "kind").string();
        return map_.script("lsof",
                           "sleep 60 & echo $! > " + pad + "\nkill -" + signaal + " $PPID\nwait");
    }
    [[nodiscard]] pid_t kind() const {
        pid_t pid = 0;
        std::ifstream(map_ / "kind") >> pid;
        return pid;
    }

    steun::TijdelijkeMap map_;
};

TEST_F(Verbindingen, ASignalWhileLsofHangsEndsAllThatItStartedAndThenTheProgram) {
    // Orphans come to this process, so that it can see how they ended.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    for (const auto& [naam, nummer] :
         {std::pair("INT", SIGINT), {"TERM", SIGTERM}, {"HUP", SIGHUP}}) {
        EXPECT_EXIT(draai(hangend(naam)), testing::KilledBySignal(nummer), "");
        int stand = 0;
        ASSERT_EQ(waitpid(kind(), &stand, 0), kind()) << naam;
        EXPECT_TRUE(WIFSIGNALED(stand)) << naam;
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
}

TEST_F(Verbindingen, ASignalThatIsIgnoredStaysSo) {
    const std::string lsof = map_.script("lsof", "kill -HUP $PPID");
    EXPECT_EXIT(
        {
            signal(SIGHUP, SIG_IGN);
            draai(lsof);
        },
        testing::ExitedWithCode(0), "");
}

TEST_F(Verbindingen, ATableThatCannotBeWrittenIsAnError) {
    EXPECT_EXIT(draai("/bin/true", "/dev/full"), testing::ExitedWithCode(1),
                "de uitvoer is niet te schrijven");
    EXPECT_EXIT(draai("/bin/true", "/dev/null"), testing::ExitedWithCode(0), "");
}

TEST_F(Verbindingen, WhereNothingCouldBeMeasuredItSaysSo) {
    for (const char* lsof : {"/no/such/lsof", "/dev/null"})
        EXPECT_EXIT(draai(lsof), testing::ExitedWithCode(1),
                    "^de verbindingen zijn niet te meten: lsof ontbreekt of faalt\n$");
}

// Without the table no connection has a country, and "none" would be untrue.
TEST_F(Verbindingen, ATableThatIsMissingOrDamagedIsToldOf) {
    const auto meldt = [&](brixtel::LandenTabel& tabel) {
        EXPECT_EXIT(draai("/bin/true", tabel), testing::ExitedWithCode(1),
                    "^de landentabel ontbreekt of is beschadigd\n$");
    };
    brixtel::LandenTabel geen("/no/such/landen.bin"), map("/"), geenBestand("/dev/null");
    meldt(geen);
    meldt(map);
    meldt(geenBestand);
    std::vector<std::uint8_t> bytes = brixtel::pakIn(brixtel::schrijfLanden(steun::kleineTabel()));
    bytes.resize(bytes.size() / 2);
    steun::Tabel half(bytes);
    meldt(*half);
    steun::Tabel heel(steun::kleineTabel());
    EXPECT_EXIT(draai("/bin/true", *heel), testing::ExitedWithCode(0), "");
}

}  // namespace
