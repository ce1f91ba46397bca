// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Counts heap allocations through operator new, libraries included. Linking
// AllocationCounter.cpp replaces a program's operators, so such tests are
// programs of their own.
class AllocationCounter {
  public:
    AllocationCounter();

    // Allocations of this thread since the counter was made.
    [[nodiscard]] std::size_t count() const;

    // Allocations of all threads since the program began.
    [[nodiscard]] static std::size_t total();

  private:
    std::size_t start_;
};

// Refuses one allocation of this thread while it lives: the first one after so many others.
class RefusedAllocation {
  public:
    explicit RefusedAllocation(std::size_t after);
    ~RefusedAllocation();
    RefusedAllocation(const RefusedAllocation&) = delete;
    RefusedAllocation& operator=(const RefusedAllocation&) = delete;
};
