// SPDX-License-Identifier: MIT
// Large arrays of numbers; private to platform/render.
#pragma once

#include <cstddef>
#include <memory>
#include <new>
#include <type_traits>

namespace platform {

// The kernel's large page, in bytes. An array of that size begins on one.
inline constexpr std::size_t kLargePage = std::size_t{1} << 21U;

// Asks for large pages in memory that begins on one, as far as they fill it. A kernel that has
// none leaves the memory as it is.
void useLargePages(void* data, std::size_t bytes);

// Owns numbers that have no value at first. Memory that is refused throws std::bad_alloc. One
// thread at a time; each number may have a thread of its own.
template <typename T>
class LargeArray {
    static_assert(std::is_trivially_copyable_v<T>);

  public:
    LargeArray() = default;
    explicit LargeArray(std::size_t count)
        : data_(static_cast<T*>(::operator new(count * sizeof(T), alignmentOf(count)))),
          count_(count) {
        data_.get_deleter().alignment = alignmentOf(count);
    }

    // To be called before numbers are written that are to be written nearly all. The first writes
    // then take a fault for each large page instead of one for every 4096 bytes.
    void expectAll() {
        if (data_) useLargePages(data_.get(), count_ * sizeof(T));
    }

    [[nodiscard]] T* data() { return data_.get(); }
    [[nodiscard]] const T* data() const { return data_.get(); }
    [[nodiscard]] std::size_t size() const { return count_; }

  private:
    static std::align_val_t alignmentOf(std::size_t count) {
        return std::align_val_t{count * sizeof(T) >= kLargePage ? kLargePage : 64};
    }
    struct Free {
        std::align_val_t alignment{64};
        void operator()(T* data) const { ::operator delete(data, alignment); }
    };
    std::unique_ptr<T, Free> data_;
    std::size_t count_ = 0;
};

}  // namespace platform
