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
// order. Any thread. Drops the task when no application object exists: the
// program is ending.
void runOnMainQueue(std::function<void()> task);

// Runs tasks one after the other on a thread of its own, which starts with the
// first task. The queue owns its thread and tasks. Its destructor waits for the
// running task; waiting tasks never run.
class SerialQueue {
  public:
    explicit SerialQueue(std::string label);
    ~SerialQueue();
    SerialQueue(const SerialQueue&) = delete;
    SerialQueue& operator=(const SerialQueue&) = delete;

    // Any thread.
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
