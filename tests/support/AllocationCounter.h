// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Counts every allocation by operator new in the whole program, libraries
// included. Only for test programs of their own: linking it replaces the
// operators.
class AllocationCounter {
  public:
    // Since the program began.
    static std::size_t count();
};
