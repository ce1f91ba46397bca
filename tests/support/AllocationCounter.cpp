// SPDX-License-Identifier: MIT
#include "tests/support/AllocationCounter.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

thread_local std::size_t mine = 0;
std::atomic<std::size_t> everyones{0};
thread_local std::size_t untilRefused = 0;  // 0: none is refused

// Null where memory is refused.
void* asked(std::size_t size, std::size_t alignment) noexcept {
    ++mine;
    ++everyones;
    if (untilRefused > 0 && --untilRefused == 0) return nullptr;
    const std::size_t whole = (size + alignment - 1) / alignment * alignment;
    return std::aligned_alloc(alignment, whole == 0 ? alignment : whole);
}

void* counted(std::size_t size, std::size_t alignment) {
    void* const memory = asked(size, alignment);
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

RefusedAllocation::RefusedAllocation(std::size_t after) {
    untilRefused = after + 1;
}

RefusedAllocation::~RefusedAllocation() {
    untilRefused = 0;
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
    return asked(size, alignof(std::max_align_t));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept {
    return asked(size, static_cast<std::size_t>(alignment));
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
