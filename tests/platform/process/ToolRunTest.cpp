// SPDX-License-Identifier: MIT
#include "platform/process/ToolRun.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "tests/support/Processen.h"
#include "tests/support/TijdelijkeMap.h"

using platform::runTool;
using platform::ToolStop;

namespace {

std::string shell(const std::string& script, const ToolStop* stop = nullptr) {
    const auto text = runTool({.program = "/bin/sh", .arguments = {"-c", script}}, stop);
    return text ? std::string(text->text()) : "nothing";
}

TEST(ToolRun, ReadsAllThatTheToolWrites) {
    EXPECT_EQ(shell("echo one; echo two"), "one\ntwo\n");
}

TEST(ToolRun, PassesTheArgumentsAsTheyAre) {
    const auto text =
        runTool({.program = "/bin/sh", .arguments = {"-c", "printf '%s|' \"$@\"", "x", "a b", ""}});
    EXPECT_EQ(text->text(), "a b||");
}

TEST(ToolRun, ReadsMoreThanAPipeHolds) {
    const std::string text = shell("head -c 3000000 /dev/zero");
    EXPECT_EQ(text, std::string(3'000'000, '\0'));
}

TEST(ToolRun, TheExitStatusIsNotLookedAt) {
    EXPECT_EQ(shell("echo fine; exit 3"), "fine\n");
}

TEST(ToolRun, ATextBeforeACrashCounts) {
    EXPECT_EQ(shell("echo fine; kill -ABRT $$"), "fine\n");
}

TEST(ToolRun, StandardErrorIsThrownAwayAndInputIsEmpty) {
    EXPECT_EQ(shell("echo lost >&2; cat; echo kept"), "kept\n");
}

TEST(ToolRun, TheToolRunsAtALowerPriorityThanThisProgram) {
    const int own = getpriority(PRIO_PROCESS, 0);
    EXPECT_EQ(shell("nice"), std::to_string(std::min(own + 5, 19)) + '\n');
}

TEST(ToolRun, AMissingProgramIsNothing) {
    EXPECT_FALSE(runTool({.program = "/no/such/program", .arguments = {}}));
}

TEST(ToolRun, AFileThatIsNoProgramIsNothing) {
    const steun::TijdelijkeMap folder;
    EXPECT_FALSE(runTool({.program = folder.bestand("text", "hello"), .arguments = {}}));
}

TEST(ToolRun, TheToolInheritsNoOtherDescriptor) {
    // The pipe is not marked to be closed in a child.
    std::array<int, 2> leak{};
    ASSERT_EQ(pipe(leak.data()), 0);
    EXPECT_EQ(shell("ls /proc/self/fd | wc -l | tr -d ' '"), "4\n");  // 0, 1, 2 and ls's own
    close(leak[0]);
    close(leak[1]);
}

TEST(ToolRun, TheToolGetsSignalsAsUsual) {
    sigset_t usr1, before;
    sigemptyset(&usr1);
    sigaddset(&usr1, SIGUSR1);
    pthread_sigmask(SIG_BLOCK, &usr1, &before);
    const auto was = signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(shell("grep -E '^Sig(Blk|Ign)' /proc/self/status"),
              "SigBlk:\t0000000000000000\nSigIgn:\t0000000000000000\n");
    signal(SIGPIPE, was);
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST(ToolRun, NothingIsLeftBehindWhateverHappened) {
    const long before = steun::descriptors();
    for (int i = 0; i < 50; ++i) {
        (void)shell("echo x");
        (void)runTool({.program = "/no/such/program", .arguments = {}});
    }
    EXPECT_EQ(steun::descriptors(), before);
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST(ToolRun, WithoutADescriptorToSpareItIsNothing) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    for (rlim_t spare = 0; spare < 4; ++spare) {
        // The next free number, so that only `spare` more can be opened.
        const int next = dup(0);
        close(next);
        const rlimit few{static_cast<rlim_t>(next) + spare, before.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
        EXPECT_FALSE(runTool({.program = "/bin/echo", .arguments = {}})) << spare;
        setrlimit(RLIMIT_NOFILE, &before);
        EXPECT_FALSE(steun::heeftKinderen());
    }
}

TEST(ToolRun, AStopEndsAToolThatHangsAndItsChildren) {
    const steun::TijdelijkeMap folder;
    const std::string started = (folder / "started").string();
    mkfifo(started.c_str(), 0600);
    const ToolStop stop;
    std::string text;
    std::thread worker([&] {
        // Two processes hold the pipe, and neither ends.
        text = shell("echo half; sleep 1000 & echo $! > " + started + "; wait", &stop);
    });
    int sleeper = 0;
    std::ifstream(started) >> sleeper;
    ASSERT_GT(sleeper, 0);
    const int ended = static_cast<int>(syscall(SYS_pidfd_open, sleeper, 0U));
    ASSERT_GE(ended, 0);
    stop.request();
    worker.join();
    EXPECT_EQ(text, "nothing");
    EXPECT_FALSE(steun::heeftKinderen());
    // The tool is another process's child: told to end, not waited for.
    pollfd end{ended, POLLIN, 0};
    EXPECT_EQ(poll(&end, 1, 10'000), 1);
    close(ended);
}

TEST(ToolRun, AStopEndsAToolThatHasClosedItsOutputAndHangs) {
    const steun::TijdelijkeMap folder;
    const std::string started = (folder / "started").string();
    mkfifo(started.c_str(), 0600);
    const ToolStop stop;
    std::string text;
    std::thread worker(
        [&] { text = shell("exec >&-; echo x > " + started + "; sleep 1000", &stop); });
    std::string word;
    std::ifstream(started) >> word;
    ASSERT_EQ(word, "x");
    stop.request();
    worker.join();
    EXPECT_EQ(text, "nothing");
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST(ToolRun, WritesAtMostSoMuch) {
    const auto bounded = [](std::size_t most, platform::ToolEnd& end) {
        return runTool(
            {.program = "/bin/sh", .arguments = {"-c", "printf 12345"}, .mostBytes = most}, nullptr,
            &end);
    };
    auto end = platform::ToolEnd::done;
    EXPECT_FALSE(bounded(4, end));
    EXPECT_EQ(end, platform::ToolEnd::tooMuch);
    EXPECT_EQ(bounded(5, end)->text(), "12345");
    EXPECT_EQ(end, platform::ToolEnd::done);
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST(ToolRun, TakesAtMostSoLong) {
    for (const char* script : {"sleep 1000", "echo x; sleep 1000", "exec >&-; sleep 1000"}) {
        auto end = platform::ToolEnd::done;
        EXPECT_FALSE(
            runTool({.program = "/bin/sh", .arguments = {"-c", script}, .mostSeconds = 0.02},
                    nullptr, &end));
        EXPECT_EQ(end, platform::ToolEnd::late) << script;
    }
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST(ToolRun, SaysHowItEnded) {
    const auto endOf = [](const char* program, const char* script) {
        auto end = platform::ToolEnd::late;
        (void)runTool({.program = program, .arguments = {"-c", script}}, nullptr, &end);
        return end;
    };
    EXPECT_EQ(endOf("/bin/sh", "exit 0"), platform::ToolEnd::done);
    EXPECT_EQ(endOf("/bin/sh", "exit 1"), platform::ToolEnd::done);
    EXPECT_EQ(endOf("/bin/sh", "exit 2"), platform::ToolEnd::failed);
    EXPECT_EQ(endOf("/bin/sh", "kill -9 $$"), platform::ToolEnd::failed);
    EXPECT_EQ(endOf("/no/such", ""), platform::ToolEnd::notStarted);
}

TEST(ToolRun, AStopIsForGood) {
    const ToolStop stop;
    stop.request();
    EXPECT_EQ(shell("echo x; sleep 1000", &stop), "nothing");
    EXPECT_EQ(shell("echo x; sleep 1000", &stop), "nothing");
    EXPECT_FALSE(steun::heeftKinderen());
}

TEST(ToolRun, AProgramThatIgnoresItsChildrenGetsTheTextToo) {
    const auto was = signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(shell("echo x"), "x\n");
    signal(SIGCHLD, was);
}

TEST(FindTool, KnowsTheSystemsTools) {
    EXPECT_EQ(platform::findTool("env"), "/usr/bin/env");
    EXPECT_EQ(platform::findTool("no such tool"), std::nullopt);
}

TEST(FindTool, LooksOnThePathAfterTheSystemsFolders) {
    const steun::TijdelijkeMap folder;
    const std::string own = folder.script("own-tool", "true");
    (void)folder.script("env", "true");
    const std::string before = getenv("PATH");
    setenv("PATH",
           ("/no/such/folder::" + std::filesystem::path(own).parent_path().string()).c_str(), 1);
    EXPECT_EQ(platform::findTool("own-tool"), own);
    EXPECT_EQ(platform::findTool("env"), "/usr/bin/env");
    setenv("PATH", before.c_str(), 1);
}

TEST(FindTool, PassesOverFoldersOfThatName) {
    const steun::TijdelijkeMap folder;
    std::filesystem::create_directories(folder / "first" / "own-tool");
    const std::string own = folder.script("own-tool", "true");
    const std::string before = getenv("PATH");
    const std::string first = (folder / "first").string();
    setenv("PATH", (first + ":" + std::filesystem::path(own).parent_path().string()).c_str(), 1);
    EXPECT_EQ(platform::findTool("own-tool"), own);
    setenv("PATH", before.c_str(), 1);
}

TEST(FindTool, RunsNothingFromWhereverTheProgramHappensToBe) {
    const steun::TijdelijkeMap folder;
    const std::string own = folder.script("own-tool", "true");
    const std::string before = getenv("PATH");
    const auto here = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::path(own).parent_path());
    for (const char* path : {".", "./", ":", "", "no/../."}) {
        setenv("PATH", path, 1);
        EXPECT_EQ(platform::findTool("own-tool"), std::nullopt) << path;
    }
    std::filesystem::current_path(here);
    setenv("PATH", before.c_str(), 1);
}

}  // namespace
