// SPDX-License-Identifier: MIT
#pragma once

#include <QFileSystemWatcher>
#include <functional>

namespace brixtel {

// Watches whether the session starts the program, whoever switches that. The kernel tells of
// changes, so that a watch costs nothing while the folder of the entry stays the same. A
// change on a network's disk shows at the next kijk(). Main thread.
class AutostartWacht {
  public:
    // Calls `anders` after each change.
    explicit AutostartWacht(std::function<void()> anders);
    AutostartWacht(const AutostartWacht&) = delete;
    AutostartWacht& operator=(const AutostartWacht&) = delete;

    [[nodiscard]] bool isAan() const { return aan_; }

    // Reads the entry anew.
    void kijk();

  private:
    void volg();

    const std::function<void()> anders_;
    QFileSystemWatcher kijker_;
    bool aan_ = false;
};

}  // namespace brixtel
