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

// A few threads, owned here, that share out numbered pieces of work with the thread
// that asks. They start with the first work that is large enough, sleep between
// works, and end with this. Used by one thread at a time.
class TileWorkers {
  public:
    // Threads in all, the asking one among them; 0: as many as suit the machine.
    explicit TileWorkers(int threads);
    ~TileWorkers();
    TileWorkers(const TileWorkers&) = delete;
    TileWorkers& operator=(const TileWorkers&) = delete;

    [[nodiscard]] int threads() const { return threads_; }

    // Calls work(piece, thread) once for every piece in [0, pieces), in any order and
    // on any thread, `thread` being in [0, threads()) and used by one call at a time.
    // Returns when all are done. Allocates nothing after the first time.
    template <typename Work>
    void each(int pieces, Work&& work) {
        const auto call = [](void* with, int piece, int thread) {
            (*static_cast<std::remove_reference_t<Work>*>(with))(piece, thread);
        };
        run(pieces, call, &work);
    }

    // Fewer pieces are not worth waking anybody for.
    static constexpr int kFewestPieces = 48;

  private:
    using Call = void (*)(void* with, int piece, int thread);
    void run(int pieces, Call call, void* with);
    void start();
    void serve(int thread);
    void takePieces(int thread);

    int threads_ = 1;
    std::vector<std::thread> crew_;
    bool started_ = false;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable done_;
    // Under the mutex.
    bool ends_ = false;
    bool open_ = false;  // whether a thread may still join the work
    unsigned work_ = 0;  // counts the works
    int joined_ = 0;

    // Written only while nobody has joined.
    Call call_ = nullptr;
    void* with_ = nullptr;
    int pieces_ = 0;
    std::atomic<int> next_{0};
};

}  // namespace platform
