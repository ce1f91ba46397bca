// SPDX-License-Identifier: MIT
#include "platform/files/StandardOutput.h"

#include <cerrno>
#include <cstdio>

namespace platform {

int printOut(std::string_view text) {
    errno = 0;
    const bool written = std::fwrite(text.data(), 1, text.size(), stdout) == text.size();
    if (written && std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return 0;
    return errno != 0 ? errno : EIO;
}

}  // namespace platform
