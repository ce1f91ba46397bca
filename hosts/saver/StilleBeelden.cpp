// SPDX-License-Identifier: MIT
#include "hosts/saver/StilleBeelden.h"

namespace brixtel {

namespace {
constexpr double kStap = 10.0;
// The age, in seconds, at which a scene that has just begun is shown: well under way.
constexpr double kOpGang = 6.0;
}  // namespace

StilleBeelden::StilleBeelden(platform::RestableClock& beelden, platform::WindowServer& server,
                             const QString& bus)
    : beelden_(beelden), server_(server), wens_(bus, [this](bool stil) { zet(stil); }) {}

void StilleBeelden::zet(bool stil) {
    beelden_.setResting(stil);
    stap_ = platform::Timer();
    if (stil) {
        beelden_.leap(kOpGang);
        stap_ = platform::Timer(server_.clock(), {.interval = kStap, .repeats = true},
                                [this] { stap(); });
    }
    server_.setNeedsFrames();
}

void StilleBeelden::stap() {
    // The rotating mode may change the scene between two stills.
    beelden_.leap(kStap - kOpGang);
    beelden_.leap(kOpGang);
    server_.setNeedsFrames();
}

}  // namespace brixtel
