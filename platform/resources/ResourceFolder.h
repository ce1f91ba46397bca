// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace platform {

// Finds a file in the folder "resources" beside the module's own file, in the
// build tree and installed alike; never beside the program that loaded the
// module.
//
// `inModule` is the address of any function or variable of the module, which
// may be a shared library or a program. Gives nothing when there is no such
// file. The caller owns the path. Any thread.
[[nodiscard]] std::optional<std::filesystem::path> resourcePath(const void* inModule,
                                                                std::string_view name);

}  // namespace platform
