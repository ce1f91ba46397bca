// SPDX-License-Identifier: MIT
// The window systems of this build; private to platform/window/systems.
#pragma once

#include <span>

#include "platform/window/WindowSystemKind.h"

namespace platform {

// All kinds, in the order in which the session is probed; never empty.
[[nodiscard]] std::span<const WindowSystemKind* const> windowSystemKinds();

// The kind that Qt runs on; null where Qt runs on none of them.
[[nodiscard]] const WindowSystemKind* qtsKind();
// The kind of the program's windows: that of the last DisplayCheck, else Qt's, else the last.
[[nodiscard]] const WindowSystemKind& programsKind();

}  // namespace platform
