// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

// Counts what is taken from the heap through operator new, libraries included.
// A program that links AllocationCounter.cpp has its operators replaced, so such
// tests are programs of their own.
class AllocationCounter {
  public:
    AllocationCounter();

    // By this thread since the counter was made.
    [[nodiscard]] std::size_t count() const;

    // By all threads since the program began.
    [[nodiscard]] static std::size_t total();

  private:
    std::size_t start_;
};
