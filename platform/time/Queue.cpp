// SPDX-License-Identifier: MIT
#include "platform/time/Queue.h"

#include <pthread.h>

#include <QCoreApplication>
#include <QMetaObject>
#include <utility>

namespace platform {

void runOnMainQueue(std::function<void()> task) {
    if (QCoreApplication* app = QCoreApplication::instance())
        QMetaObject::invokeMethod(app, std::move(task), Qt::QueuedConnection);
}

SerialQueue::SerialQueue(std::string label) : label_(std::move(label)) {}

SerialQueue::~SerialQueue() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
        tasks_.clear();
    }
    wake_.notify_one();
    if (thread_.joinable()) thread_.join();
}

void SerialQueue::async(std::function<void()> task) {
    const std::lock_guard lock(mutex_);
    if (ending_) return;
    tasks_.push_back(std::move(task));
    if (!thread_.joinable()) thread_ = std::thread([this] { work(); });
    wake_.notify_one();
}

void SerialQueue::work() {
    // The kernel keeps 15 characters of a thread's name; the label's tail says most.
    const std::string name = label_.size() > 15 ? label_.substr(label_.size() - 15) : label_;
    pthread_setname_np(pthread_self(), name.c_str());
    std::unique_lock lock(mutex_);
    for (;;) {
        wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
        if (ending_) return;
        const std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

}  // namespace platform
