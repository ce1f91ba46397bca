// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <optional>

#include "desktop/MuziekStand.h"
#include "platform/sound/MonitorRecorder.h"
#include "platform/time/Timer.h"

namespace brixtel {

// Listens to the machine's sound output on request, and reports beats and loudness. Without a
// sound server there is nothing to report; the listener tries again, soon at first and then
// every ten seconds. A listener that does not listen has no connection, no thread and no
// timer. Main thread; the clock must outlive it, and any thread must be able to call the
// clock's now().
class MuziekLuisteraar {
  public:
    explicit MuziekLuisteraar(platform::MediaClock& klok,
                              platform::MonitorRecorderOptions opties = {});
    ~MuziekLuisteraar();
    MuziekLuisteraar(const MuziekLuisteraar&) = delete;
    MuziekLuisteraar& operator=(const MuziekLuisteraar&) = delete;

    void luister(bool aan);
    [[nodiscard]] bool luistert() const { return luistert_; }

    // The state of the music; none until the present server has sent sound. Beat numbers go
    // on counting for the listener's whole life.
    [[nodiscard]] std::optional<MuziekStand> stand() const;

    // Whether the listener listens and its last attempts found no sound server. A server
    // counts as found one second after it was reached.
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
    platform::Timer pogingKlok_;
};

}  // namespace brixtel
