// SPDX-License-Identifier: MIT
#pragma once

#include "platform/scene/Node.h"
#include "platform/time/RandomSource.h"

namespace brixtel {

// The word, with one box for each lit cell of its block letters, centred on the origin. One
// unit is one block.
[[nodiscard]] platform::NodePtr logoWoord();

// The ring of 48 digits, which undulates three times around its circle.
[[nodiscard]] platform::NodePtr logoRing(platform::RandomSource& toeval);

// A tile of the floor's grid.
[[nodiscard]] QImage logoTegel();

}  // namespace brixtel
