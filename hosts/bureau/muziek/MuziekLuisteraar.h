// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "desktop/MuziekStand.h"
#include "platform/sound/MonitorRecorder.h"
#include "platform/time/Timer.h"

namespace brixtel {

// Listens to what the machine plays, while asked to, and tells the beats and the
// loudness. Where there is no sound server, or it goes, there is nothing to tell,
// and it is looked for again, at first soon and then every ten seconds. While
// nobody listens there is no connection, no thread and no timer. Main thread; the
// clock must outlive it, and its now() must be for any thread to call.
class MuziekLuisteraar {
  public:
    explicit MuziekLuisteraar(platform::MediaClock& klok,
                              platform::MonitorRecorderOptions opties = {});
    ~MuziekLuisteraar();
    MuziekLuisteraar(const MuziekLuisteraar&) = delete;
    MuziekLuisteraar& operator=(const MuziekLuisteraar&) = delete;

    void luister(bool aan);
    [[nodiscard]] bool luistert() const { return luistert_; }

    // None until something has been heard from the server that is there now. The
    // number of the beat goes on counting as long as the listener lives.
    [[nodiscard]] std::optional<MuziekStand> stand() const;

    // Whether the last attempts, while it listens, found no sound server. One that
    // is reached is believed after a second.
    [[nodiscard]] bool isZonderServer() const;

  private:
    struct Gehoor;
    void begin();
    void verloren();

    platform::MediaClock& klok_;
    const platform::MonitorRecorderOptions opties_;
    const std::shared_ptr<Gehoor> gehoor_;
    bool luistert_ = false;
    double geduld_;  // seconds until the next attempt
    bool kwijt_ = false;
    double begonnen_ = 0;  // the clock's time at the last attempt
    std::unique_ptr<platform::MonitorRecorder> opname_;
    platform::Timer opnieuw_;
};

}  // namespace brixtel
