// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileWorkers.h"

#include <algorithm>
#include <system_error>

#include "platform/time/ProcessUsage.h"

namespace platform {

namespace {

constexpr int kMostThreads = 4;

// Pieces that a thread takes at once, where there are many: neighbours lie side by side in memory.
constexpr int kTaken = 4;

int threadsFor(int asked) {
    if (asked > 0) return std::min(asked, kMostThreads);
    return std::min(processorCount(), kMostThreads);
}

}  // namespace

TileWorkers::TileWorkers(int threads) : threads_(threadsFor(threads)) {}

TileWorkers::~TileWorkers() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : helpers_)
        thread.join();
}

void TileWorkers::start() {
    started_ = true;
    helpers_.reserve(static_cast<std::size_t>(threads_ - 1));
    try {
        for (int thread = 1; thread < threads_; ++thread)
            helpers_.emplace_back([this, thread] { serve(thread); });
    } catch (const std::system_error&) {
        // The threads that there are do all the work.
    }
}

void TileWorkers::run(int pieces, bool shares, Call call, void* with) {
    if (threads_ == 1 || !shares) {
        for (int piece = 0; piece < pieces; ++piece)
            call(with, piece, 0);
        return;
    }
    if (!started_) start();
    {
        const std::lock_guard lock(mutex_);
        call_ = call;
        with_ = with;
        pieces_ = pieces;
        next_.store(0, std::memory_order_relaxed);
        open_ = true;
        ++work_;
    }
    wake_.notify_all();
    takePieces(0);
    std::unique_lock lock(mutex_);
    // A thread that wakes only now has nothing left to do.
    open_ = false;
    done_.wait(lock, [this] { return joined_ == 0; });
}

void TileWorkers::takePieces(int thread) {
    const int taken = pieces_ < kTaken * threads_ ? 1 : kTaken;
    for (;;) {
        const int first = next_.fetch_add(taken, std::memory_order_relaxed);
        if (first >= pieces_) return;
        for (int piece = first; piece < std::min(first + taken, pieces_); ++piece)
            call_(with_, piece, thread);
    }
}

void TileWorkers::serve(int thread) {
    unsigned last = 0;
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [&] { return ends_ || (open_ && work_ != last); });
        if (ends_) return;
        last = work_;
        ++joined_;
        lock.unlock();
        takePieces(thread);
        lock.lock();
        if (--joined_ == 0) done_.notify_one();
    }
}

}  // namespace platform
