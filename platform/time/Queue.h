// SPDX-License-Identifier: MIT
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace platform {

// Runs the task on the main thread, in a later turn of its event loop, in
// order. From any thread. Without an application object the task is dropped:
// the program is ending.
void runOnMainQueue(std::function<void()> task);

// Runs tasks one after the other on a thread of its own, which starts with the
// first task. Dropping the queue waits for the task in flight; those that had
// not started are never run.
class SerialQueue {
  public:
    explicit SerialQueue(std::string label);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    // From any thread.
    void async(std::function<void()> task);

    [[nodiscard]] const std::string& label() const { return label_; }

  private:
    void work();

    const std::string label_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> tasks_;
    bool ending_ = false;
    std::thread thread_;
};

}  // namespace platform
