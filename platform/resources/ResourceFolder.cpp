// SPDX-License-Identifier: MIT
#include "platform/resources/ResourceFolder.h"

#include <dlfcn.h>

#include <system_error>

namespace platform {

std::optional<std::filesystem::path> resourcePath(const void* inModule, std::string_view name) {
    Dl_info module{};
    if (dladdr(inModule, &module) == 0 || !module.dli_fname) return std::nullopt;
    std::error_code error;
    // The library may be a link in another folder; its resources lie beside the real file.
    const auto file = std::filesystem::canonical(module.dli_fname, error);
    if (error) return std::nullopt;
    auto path = file.parent_path() / "resources" / name;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    return path;
}

}  // namespace platform
