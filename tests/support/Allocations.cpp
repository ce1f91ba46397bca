// SPDX-License-Identifier: MIT
#include "tests/support/Allocations.h"

#include <cstdlib>
#include <new>

namespace {

thread_local std::uint64_t count = 0;

void* take(std::size_t size) {
    ++count;
    if (void* const memory = std::malloc(size > 0 ? size : 1)) return memory;
    throw std::bad_alloc();
}

void* take(std::size_t size, std::align_val_t alignment) {
    ++count;
    const auto step = static_cast<std::size_t>(alignment);
    if (void* const memory = std::aligned_alloc(step, (size + step - 1) / step * step))
        return memory;
    throw std::bad_alloc();
}

}  // namespace

namespace platform::test {

std::uint64_t allocations() {
    return count;
}

}  // namespace platform::test

void* operator new(std::size_t size) {
    return take(size);
}
void* operator new[](std::size_t size) {
    return take(size);
}
void* operator new(std::size_t size, std::align_val_t alignment) {
    return take(size, alignment);
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return take(size, alignment);
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete[](void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
    std::free(memory);
}
