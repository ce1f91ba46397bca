// SPDX-License-Identifier: MIT
#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t mine = 0;
std::atomic<std::size_t> everyones{0};

void* counted(std::size_t size, std::size_t alignment) {
    ++mine;
    ++everyones;
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    void* const memory = std::aligned_alloc(alignment, whole == 0 ? alignment : whole);
    if (!memory) throw std::bad_alloc();
    return memory;
}

}  // namespace

AllocationCounter::AllocationCounter() : start_(mine) {}

std::size_t AllocationCounter::count() const {
    return mine - start_;
}

std::size_t AllocationCounter::total() {
    return everyones.load();
}

// The array forms call these. The non-throwing forms would too, but sanitizers
// replace those with their own.
void* operator new(std::size_t size) {
    return counted(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return counted(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    return counted(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
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
