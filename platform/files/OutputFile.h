// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Makes `bytes` the whole content of a file: 0, or the error's number.
//
// The file is replaced as a whole or stays as it was: the bytes go into a new file beside
// it, reach the disk, and take its place in one step. An existing file keeps its mode; a
// file without write permission gives an error. A symbolic link is followed only where the
// caller's own user made the link, and gives ELOOP where another user did. A device or a
// pipe is written to; a pipe without a reader gives ENXIO. Any thread; waits for the disk.
[[nodiscard]] int replaceFile(const std::string& path, std::string_view bytes);

}  // namespace platform
