// SPDX-License-Identifier: MIT
// Counting what the C++ allocator hands out.
#pragma once

#include <cstdint>

namespace platform::test {

// How often this thread has called operator new so far. Allocations.cpp must be
// among the program's sources: it replaces the operators.
[[nodiscard]] std::uint64_t allocations();

}  // namespace platform::test
