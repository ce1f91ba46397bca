// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Writes `text` on the process's shared standard output and flushes it: 0, or the error's
// number. An error of earlier output counts too. Main thread.
[[nodiscard]] int printOut(std::string_view text);

}  // namespace platform
