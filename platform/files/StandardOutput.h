// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Writes `text` on the standard output and flushes it: 0, or the error's number,
// also of what was written there before. The text stays with its owner. Main thread.
[[nodiscard]] int printOut(std::string_view text);

}  // namespace platform
