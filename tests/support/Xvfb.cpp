// SPDX-License-Identifier: MIT
#include "tests/support/Xvfb.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cctype>

namespace platform::test {

Xvfb::Xvfb(const std::string& screen) {
    std::array<int, 2> pipe{};
    if (pipe2(pipe.data(), O_CLOEXEC) != 0) return;
    process_ = fork();
    if (process_ == 0) {
        // It writes its number to file 3 as soon as it answers, and must not
        // outlive a test that is killed.
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const int quiet = open("/dev/null", O_WRONLY);
        dup2(quiet, 2);
        if (pipe[1] == 3) {
            fcntl(3, F_SETFD, 0);
        } else {
            dup2(pipe[1], 3);
        }
        execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", screen.c_str(), "-nolisten",
               "tcp", "-noreset", nullptr);
        _exit(127);
    }
    close(pipe[1]);
    std::string number;
    char c = 0;
    while (process_ > 0 && read(pipe[0], &c, 1) == 1 && std::isdigit(c))
        number.push_back(c);
    close(pipe[0]);
    if (!number.empty()) name_ = ":" + number;
}

Xvfb::~Xvfb() {
    if (process_ <= 0) return;
    kill(process_, SIGTERM);
    waitpid(process_, nullptr, 0);
}

}  // namespace platform::test
