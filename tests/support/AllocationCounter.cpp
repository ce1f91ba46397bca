// SPDX-License-Identifier: MIT
#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> allocations{0};

void* counted(std::size_t size, std::size_t alignment) {
    ++allocations;
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    void* const memory = alignment <= alignof(std::max_align_t)
                             ? std::malloc(size == 0 ? 1 : size)
                             : std::aligned_alloc(alignment, whole);
    if (!memory) throw std::bad_alloc();
    return memory;
}

}  // namespace

std::size_t AllocationCounter::count() {
    return allocations.load();
}

// The other forms of the standard library call these.
void* operator new(std::size_t size) {
    return counted(size, 1);
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
