// SPDX-License-Identifier: MIT
// However the program ends, a tool that hangs ends with it.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/stat.h>

#include "tests/connections/Programma.h"
#include "tests/connections/WachtOpstelling.h"

namespace {

class ProgrammaEinde : public testing::Test {
  protected:
    ProgrammaEinde() {
        // Orphans come to this process, so that it can see whether there are any.
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        mkfifo(buis_.c_str(), 0600);
        qputenv("STANDIN_GESTART", buis_.c_str());
        qputenv("STANDIN_HANGT", "ja");
    }
    ~ProgrammaEinde() override {
        qunsetenv("STANDIN_GESTART");
        qunsetenv("STANDIN_HANGT");
        prctl(PR_SET_CHILD_SUBREAPER, 0);
    }

    steun::Programma start() {
        return steun::Programma({steun::kProgrammas + "wachter", steun::kStandin});
    }
    // Comes when the tool has started, and hangs.
    pid_t tool() const {
        pid_t pid = 0;
        std::ifstream(buis_) >> pid;
        return pid;
    }

    steun::TijdelijkeMap map_;
    const std::string buis_ = (map_ / "buis").string();
};

TEST_F(ProgrammaEinde, ByReturningFromMainTheToolIsEndedAndAskedAfter) {
    auto programma = start();
    const pid_t pid = tool();
    ASSERT_EQ(kill(pid, 0), 0);
    programma.sluit();
    EXPECT_EQ(programma.wacht(), 0);
    EXPECT_EQ(kill(pid, 0), -1);
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST_F(ProgrammaEinde, ByASignalTheToolIsKilledToo) {
    for (const int signaal : {SIGTERM, SIGKILL}) {
        auto programma = start();
        const pid_t pid = tool();
        ASSERT_EQ(kill(pid, 0), 0);
        programma.stuur(signaal);
        const int stand = programma.wacht();
        EXPECT_TRUE(WIFSIGNALED(stand));
        EXPECT_EQ(WTERMSIG(stand), signaal);
        int dood = 0;
        ASSERT_EQ(waitpid(pid, &dood, 0), pid);  // an orphan by now
        EXPECT_TRUE(WIFSIGNALED(dood));
        EXPECT_EQ(WTERMSIG(dood), SIGKILL);
    }
}

}  // namespace
