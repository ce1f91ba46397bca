// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Counts what this thread takes from the heap through operator new from its
// making on. A program that links AllocationCounter.cpp has its operator new
// replaced, so such tests are programs of their own.
class AllocationCounter {
  public:
    AllocationCounter();
    [[nodiscard]] std::size_t count() const;

  private:
    std::size_t start_;
};
