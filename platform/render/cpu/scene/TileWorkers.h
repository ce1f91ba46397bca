// SPDX-License-Identifier: MIT
// Threads that work on a picture's tiles; private to platform/render.
#pragma once

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <type_traits>
#include <vector>

namespace platform {

// Owns a few threads that share numbered pieces of work with the calling thread. The threads
// start with the first work that is large enough, sleep between works, and end with the
// object. Used by one thread at a time.
class TileWorkers {
  public:
    // `threads` includes the calling thread; 0: as many as suit the machine.
    explicit TileWorkers(int threads);
    ~TileWorkers();
    TileWorkers(const TileWorkers&) = delete;
    TileWorkers& operator=(const TileWorkers&) = delete;

    [[nodiscard]] int threads() const { return threads_; }

    // Calls work(piece, thread) once for every piece in [0, pieces), in any order and on any
    // thread. `thread` lies in [0, threads()); one call at a time has it. Returns when all
    // pieces are done. Allocates nothing after the first call.
    // Fewer pieces than `fewest` are all done by the caller.
    template <typename Work>
    void each(int pieces, Work&& work, int fewest = kFewestPieces) {
        const auto call = [](void* with, int piece, int thread) {
            (*static_cast<std::remove_reference_t<Work>*>(with))(piece, thread);
        };
        run(pieces, pieces >= fewest, call, &work);
    }

    // The fewest pieces that are worth waking the threads: of some work, and of little.
    static constexpr int kFewestPieces = 48;
    static constexpr int kFewestSmallPieces = 600;

  private:
    using Call = void (*)(void* with, int piece, int thread);
    void run(int pieces, bool shares, Call call, void* with);
    void start();
    void serve(int thread);
    void takePieces(int thread);

    int threads_ = 1;
    std::vector<std::thread> helpers_;
    bool started_ = false;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    // The mutex guards the next four members.
    bool ends_ = false;
    bool open_ = false;  // whether a thread may still join the work
    unsigned work_ = 0;  // counts the works
    int joined_ = 0;

    // Written only while no thread has joined the work.
    Call call_ = nullptr;
    void* with_ = nullptr;
    int pieces_ = 0;
    std::atomic<int> next_{0};
};

}  // namespace platform
