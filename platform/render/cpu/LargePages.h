// SPDX-License-Identifier: MIT
// Large pages for large memory; private to platform/render. Any thread; owns nothing.
#pragma once

#include <cstddef>

namespace platform {

// Asks for the kernel's large pages in memory that is to be written throughout. The first
// writes then take a fault for each of them instead of one for every 4096 bytes. A kernel
// that has none leaves the memory as it is.
void useLargePages(void* data, std::size_t bytes);

}  // namespace platform
