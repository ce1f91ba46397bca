// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LargePages.h"

#include <sys/mman.h>

#include <cstdint>

namespace platform {

void useLargePages(void* data, std::size_t bytes) {
    constexpr std::uintptr_t kPage = std::uintptr_t{1} << 21U;
    const auto at = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t before = (kPage - at % kPage) % kPage;
    if (bytes < before + kPage) return;
    (void)madvise(static_cast<char*>(data) + before, (bytes - before) / kPage * kPage,
                  MADV_HUGEPAGE);
}

}  // namespace platform
