// SPDX-License-Identifier: MIT
#include "platform/files/StandardOutput.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

namespace platform {

int printOut(std::string_view text) {
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (written && std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return 0;
    return errno != 0 ? errno : EIO;
}

void holdStandardStreams() {
    // A new descriptor gets the lowest free number.
    for (const int number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(number, F_GETFD) >= 0) continue;
        [[maybe_unused]] const int held =
            open("/dev/null", number == STDERR_FILENO ? O_WRONLY : O_RDONLY);
    }
}

}  // namespace platform
