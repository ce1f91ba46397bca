// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LargeArray.h"

#include <sys/mman.h>

namespace platform {

void useLargePages(void* data, std::size_t bytes) {
    if (bytes >= kLargePage) (void)madvise(data, bytes / kLargePage * kLargePage, MADV_HUGEPAGE);
}

}  // namespace platform
