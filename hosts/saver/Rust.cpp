// SPDX-License-Identifier: MIT
#include "hosts/saver/Rust.h"

namespace brixtel {

namespace {
constexpr double kStap = 10.0;
// A scene that has just begun is shown as it is once it is under way.
constexpr double kOpGang = 6.0;
}  // namespace

Rust::Rust(platform::RestableClock& beelden, platform::WindowServer& server, const QString& bus)
    : beelden_(beelden), server_(server), wens_(bus, [this](bool rust) { zet(rust); }) {}

void Rust::zet(bool rust) {
    beelden_.setResting(rust);
    stap_ = platform::Timer();
    if (rust) {
        beelden_.leap(kOpGang);
        stap_ = platform::Timer(server_.clock(), {.interval = kStap, .repeats = true},
                                [this] { stap(); });
    }
    server_.setNeedsFrames();
}

void Rust::stap() {
    // In between, the rotating mode may put up another scene.
    beelden_.leap(kStap - kOpGang);
    beelden_.leap(kOpGang);
    server_.setNeedsFrames();
}

}  // namespace brixtel
