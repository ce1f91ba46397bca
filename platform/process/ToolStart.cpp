// SPDX-License-Identifier: MIT
#include "platform/process/ToolStart.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

namespace platform {

namespace {

constexpr int kNiceness = 5;

struct Child {
    char* const* words;
    int output;
    int nothing;  // /dev/null
    pid_t parent;
};

// Runs in the child, on the parent's memory: only system calls are safe.
[[noreturn, gnu::noinline]] void becomeTool(const Child& child) {
    // A handler of the parent's must not run here, on the parent's memory, so signals
    // come through only after this reset. The reset also stops ignoring SIGPIPE.
    struct sigaction usual {};
    usual.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number)
        sigaction(number, &usual, nullptr);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);

    setpgid(0, 0);
    // The pictures come first where the machine has more work than processors.
    [[maybe_unused]] const int niceness = nice(kNiceness);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    // The parent may have ended before the death signal was requested.
    if (getppid() != child.parent) _exit(kNotStarted);
    if (dup2(child.nothing, STDIN_FILENO) < 0 || dup2(child.output, STDOUT_FILENO) < 0 ||
        dup2(child.nothing, STDERR_FILENO) < 0)
        _exit(kNotStarted);
    closefrom(STDERR_FILENO + 1);
    execv(child.words[0], child.words);
    _exit(kNotStarted);
}

// Uses vfork: fork would copy the page tables of a program full of pictures and
// delay its render threads, and posix_spawn cannot set a death signal.
[[gnu::noinline]] pid_t spawn(const Child& child) {
    const pid_t pid = vfork();        // NOLINT(clang-analyzer-security.insecureAPI.vfork)
    if (pid == 0) becomeTool(child);  // NOLINT(clang-analyzer-unix.Vfork)
    return pid;
}

// Duplicates a descriptor above the standard three. In a program that closed some
// of those three, the child could otherwise overwrite one while moving another.
int aboveStandard(int descriptor) {
    return fcntl(descriptor, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
}

}  // namespace

pid_t startTool(const ToolCall& call, int output) {
    std::vector<char*> words;
    words.reserve(call.arguments.size() + 2);
    words.push_back(const_cast<char*>(call.program.c_str()));
    for (const auto& argument : call.arguments)
        words.push_back(const_cast<char*>(argument.c_str()));
    words.push_back(nullptr);

    const int opened = open("/dev/null", O_RDWR | O_CLOEXEC);
    const Child child{.words = words.data(),
                      .output = aboveStandard(output),
                      .nothing = aboveStandard(opened),
                      .parent = getpid()};
    if (opened >= 0) close(opened);

    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    const pid_t pid = child.output >= 0 && child.nothing >= 0 ? spawn(child) : -1;
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (child.output >= 0) close(child.output);
    if (child.nothing >= 0) close(child.nothing);
    return pid;
}

}  // namespace platform
