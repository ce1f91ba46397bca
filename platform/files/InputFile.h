// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>

namespace platform {

// A file as it was read: its bytes, or the error's number in `error`. A plain value.
struct FileContent {
    std::string bytes;
    int error = 0;
};

// Reads a regular file of at most `limit` bytes. Symbolic links are followed. A file of
// another type gives ENOTSUP (a folder EISDIR), without waiting or reading; a larger file
// gives EFBIG. Any thread.
[[nodiscard]] FileContent readRegularFile(const std::string& path, std::size_t limit);

}  // namespace platform
