// SPDX-License-Identifier: MIT
// Shares work among processor cores; private to platform/render.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

namespace platform {

// Owns threads that wait between pieces of work. One calling thread at a time.
class RowPool {
  public:
    // Takes as many threads as there are cores, the caller's included, at most `most`.
    explicit RowPool(int most = 8);
    ~RowPool();
    RowPool(const RowPool&) = delete;
    RowPool& operator=(const RowPool&) = delete;

    [[nodiscard]] int threads() const { return static_cast<int>(workers_.size()) + 1; }

    // Calls `part` with 0 ..< count, in any order and on any of the threads;
    // returns when every call has returned. Allocates nothing.
    template <typename Part>
    void run(int count, const Part& part) {
        start(
            count, [](const void* object, int i) { (*static_cast<const Part*>(object))(i); },
            &part);
    }

  private:
    using Call = void (*)(const void* object, int part);

    void start(int count, Call call, const void* object);
    void work();
    void takeParts();

    std::vector<std::thread> workers_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    unsigned round_ = 0;
    int busy_ = 0;
    bool ending_ = false;
    int count_ = 0;
    Call call_ = nullptr;
    const void* object_ = nullptr;
    std::atomic<int> next_{0};
};

}  // namespace platform
