// SPDX-License-Identifier: MIT
#include "tests/support/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t allocations = 0;

void* counted(std::size_t size, std::size_t alignment) {
    ++allocations;
    const std::size_t rounded = (size + alignment - 1) / alignment * alignment;
    void* memory = std::aligned_alloc(alignment, rounded == 0 ? alignment : rounded);
    if (memory == nullptr) throw std::bad_alloc();
    return memory;
}

}  // namespace

AllocationCounter::AllocationCounter() : start_(allocations) {}
std::size_t AllocationCounter::count() const {
    return allocations - start_;
}

// The array and nothrow forms end in these two.
void* operator new(std::size_t size) {
    return counted(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return counted(size, static_cast<std::size_t>(alignment));
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
