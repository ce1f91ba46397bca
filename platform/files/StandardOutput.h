// SPDX-License-Identifier: MIT
#pragma once

#include <string_view>

namespace platform {

// Writes `text` on the standard output and flushes it: 0, or the error's number,
// also of what was written there before. The text stays with its owner. Main thread.
[[nodiscard]] int printOut(std::string_view text);

// Occupies the numbers of the standard streams that are closed, so that a file that is opened
// later gets none of their text. Printing on a closed standard output stays an error. Main
// thread, before any other.
void holdStandardStreams();

}  // namespace platform
