// SPDX-License-Identifier: MIT
// Changes of the screens that the window system announces before Screen knows them. Main
// thread.
#pragma once

#include <cstdint>

namespace platform {

// The number of changes so far. A movement of the mouse during which it grows may be the
// window system's own: a mouse outside a smaller screen is moved back inside.
[[nodiscard]] std::uint64_t announcedScreenChanges();

// Counts one. For the window systems.
void announceScreenChange();

}  // namespace platform
