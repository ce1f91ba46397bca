// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <span>

namespace platform {

struct MonitorRecorderOptions {
    QString server;                            // its address; empty for that of the session
    QString name = QStringLiteral("Brixtel");  // under which mixers list it
};

// Hears what the machine plays: the monitor of the sound server's default output,
// whichever that is at the moment. Speaks PulseAudio's protocol, which PipeWire
// serves too, and never starts a server. Never hears a microphone: a source that
// is no monitor is not opened, and the recording cannot be moved to one. A device
// that plays nothing may fall asleep meanwhile; nothing is heard from it then.
//
// Works on a thread of its own, which ends with the object. Main thread.
class MonitorRecorder {
  public:
    // Samples of one channel, −1...1, and their number a second. On the recorder's
    // thread.
    using Sound = std::function<void(std::span<const float> samples, double rate)>;

    // Starts at once. `lost` is called on the main thread, once, when the server
    // cannot be reached or has gone; nothing more is heard then.
    MonitorRecorder(const MonitorRecorderOptions& options, Sound sound, std::function<void()> lost);
    ~MonitorRecorder();
    MonitorRecorder(const MonitorRecorder&) = delete;
    MonitorRecorder& operator=(const MonitorRecorder&) = delete;

  private:
    class Link;
    std::unique_ptr<Link> link_;
};

}  // namespace platform
