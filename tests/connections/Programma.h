// SPDX-License-Identifier: MIT
#pragma once

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <string>
#include <vector>

namespace steun {

// A program that a test runs, with its input and output on pipes.
class Programma {
  public:
    explicit Programma(std::vector<std::string> woorden) {
        std::array<int, 2> in{}, uit{};
        if (pipe2(in.data(), O_CLOEXEC) < 0 || pipe2(uit.data(), O_CLOEXEC) < 0) std::abort();
        std::vector<char*> argv;
        for (auto& woord : woorden)
            argv.push_back(woord.data());
        argv.push_back(nullptr);
        posix_spawn_file_actions_t acties;
        posix_spawn_file_actions_init(&acties);
        posix_spawn_file_actions_adddup2(&acties, in[0], STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&acties, uit[1], STDOUT_FILENO);
        if (posix_spawn(&pid_, argv[0], &acties, nullptr, argv.data(), environ) != 0) std::abort();
        posix_spawn_file_actions_destroy(&acties);
        close(in[0]);
        close(uit[1]);
        invoer_ = in[1];
        uitvoer_ = uit[0];
    }
    ~Programma() {
        sluit();
        if (pid_ > 0) wacht();
        close(uitvoer_);
    }
    Programma(const Programma&) = delete;
    Programma& operator=(const Programma&) = delete;

    // The next line that it prints.
    [[nodiscard]] std::string regel() const {
        std::string regel;
        for (char teken = 0; read(uitvoer_, &teken, 1) == 1 && teken != '\n';)
            regel += teken;
        return regel;
    }
    // Ends its input.
    void sluit() {
        if (invoer_ >= 0) close(invoer_);
        invoer_ = -1;
    }
    void stuur(int signaal) const { kill(pid_, signaal); }
    // Waits for its end; the status as waitpid() gives it.
    int wacht() {
        int stand = -1;
        waitpid(pid_, &stand, 0);
        pid_ = 0;
        return stand;
    }

  private:
    pid_t pid_ = 0;
    int invoer_ = -1;
    int uitvoer_ = -1;
};

}  // namespace steun
