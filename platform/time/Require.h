// SPDX-License-Identifier: MIT
#pragma once

#include <cstdlib>

namespace platform {

// Stops the process on a programming error, in every build. What a user, a file
// or the system can cause is never one.
inline void require(bool condition) {
    if (!condition) [[unlikely]]
        std::abort();
}

}  // namespace platform
