// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <string_view>

namespace platform {

// Makes `bytes` the whole content of a file: 0, or the error's number.
//
// The file is replaced as a whole or stays as it was: the bytes go into a new
// file beside it, reach the disk, and take its place in one step. An existing
// file keeps its mode; one that may not be written gives an error. A symbolic
// link is followed only where the caller's own user made it, or root where the link
// stands for a folder of the path, and gives ELOOP elsewhere. A folder that is renamed or
// replaced meanwhile changes nothing: the file goes where the path led. A device or a pipe is
// written to; a pipe without a reader gives ENXIO. The bytes stay the caller's, who owns them. Any
// thread; waits for the disk.
[[nodiscard]] int replaceFile(const std::string& path, std::string_view bytes);

// Whether replaceFile() would be allowed to write there, as far as modes and links tell: 0, or
// the error's number. Writes nothing. Any thread.
[[nodiscard]] int mayReplaceFile(const std::string& path);

}  // namespace platform
