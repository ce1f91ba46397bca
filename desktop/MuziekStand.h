// SPDX-License-Identifier: MIT
#pragma once

namespace brixtel {

// How the music stands, as its listener tells.
struct MuziekStand {
    int beat = 0;           // another number for each new beat; not negative
    double sterkte = 0;     // of that beat, 0...1
    double level = 0;       // loudness, 0...1
    double vertraging = 0;  // seconds that the beat is old
};

}  // namespace brixtel
