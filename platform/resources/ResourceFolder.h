// SPDX-License-Identifier: MIT
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace platform {

// Where a module keeps the files that come with it: the folder "resources"
// beside the module's own file, in the build tree and installed alike, and
// never beside whatever program happened to load it.
//
// `inModule` is the address of any function or variable of the module, which
// may be a shared library or a program. Nothing when there is no such file.
// Any thread.
[[nodiscard]] std::optional<std::filesystem::path> resourcePath(const void* inModule,
                                                                std::string_view name);

}  // namespace platform
