// SPDX-License-Identifier: MIT
#include "platform/render/cpu/RowPool.h"

#include <algorithm>

namespace platform {

RowPool::RowPool(int most) {
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    for (int i = 1; i < std::min(cores, most); ++i)
        workers_.emplace_back([this] { work(); });
}

RowPool::~RowPool() {
    {
        const std::scoped_lock lock(mutex_);
        ending_ = true;
    }
    wake_.notify_all();
    for (std::thread& worker : workers_)
        worker.join();
}

void RowPool::start(int count, Call call, const void* object) {
    {
        const std::scoped_lock lock(mutex_);
        count_ = count;
        call_ = call;
        object_ = object;
        next_ = 0;
        busy_ = static_cast<int>(workers_.size());
        ++round_;
    }
    wake_.notify_all();
    takeParts();
    std::unique_lock lock(mutex_);
    done_.wait(lock, [this] { return busy_ == 0; });
}

void RowPool::takeParts() {
    for (int part = next_++; part < count_; part = next_++)
        call_(object_, part);
}

void RowPool::work() {
    unsigned seen = 0;
    std::unique_lock lock(mutex_);
    while (true) {
        wake_.wait(lock, [&] { return ending_ || round_ != seen; });
        if (ending_) return;
        seen = round_;
        lock.unlock();
        takeParts();
        lock.lock();
        if (--busy_ == 0) done_.notify_one();
    }
}

}  // namespace platform
