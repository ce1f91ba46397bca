// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <span>

namespace platform {

struct MonitorRecorderOptions {
    QString server;                            // the server's address; empty for the session's own
    QString name = QStringLiteral("Brixtel");  // the name that mixers show
};

// Records what the machine plays: the monitor of the sound server's current
// default output. Speaks PulseAudio's protocol, which PipeWire serves too, and
// never starts a server. Never records a microphone: a source that is no
// monitor is not opened, and mixers cannot move the recording to one. A silent
// device may fall asleep; it gives no sound until it wakes.
//
// Main thread. Owns a thread of its own, which ends with the object.
class MonitorRecorder {
  public:
    // Samples of one channel as the server sends them, −1...1 unless it sends nonsense or
    // no numbers, and the number of samples per second. Called on the recorder's own
    // thread.
    using Sound = std::function<void(std::span<const float> samples, double rate)>;

    // Starts at once. Calls `lost` once, on the main thread, when the server
    // cannot be reached or has gone; no sound follows.
    MonitorRecorder(const MonitorRecorderOptions& options, Sound sound, std::function<void()> lost);
    ~MonitorRecorder();
    MonitorRecorder(const MonitorRecorder&) = delete;
    MonitorRecorder& operator=(const MonitorRecorder&) = delete;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
