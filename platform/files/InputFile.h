// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace platform {

// What reading a file gave: its bytes, or the error's number in `error`.
struct FileContent {
    std::string bytes;
    int error = 0;
};

// Reads a regular file of at most `limit` bytes. Symbolic links are followed.
// Anything else than a regular file gives ENOTSUP (a folder EISDIR), and is
// neither waited for nor read; a larger file gives EFBIG. Any thread.
[[nodiscard]] FileContent readRegularFile(const std::string& path, std::size_t limit);

}  // namespace platform
