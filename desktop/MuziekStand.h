// SPDX-License-Identifier: MIT
#pragma once

namespace brixtel {

// The state of the music, as its listener reports it.
struct MuziekStand {
    int beat = 0;           // changes with each new beat; not negative
    double sterkte = 0;     // of that beat, 0...1
    double level = 0;       // loudness, 0...1
    double vertraging = 0;  // seconds since the beat
};

}  // namespace brixtel
