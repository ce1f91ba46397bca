// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace platform {

// Stops the process on a programming error, in every build. Errors that a user, a file
// or the system can cause are never programming errors. Any thread; owns nothing.
inline void require(bool condition) {
    if (!condition) [[unlikely]]
        std::abort();
}

}  // namespace platform
