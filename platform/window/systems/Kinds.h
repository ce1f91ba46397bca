// SPDX-License-Identifier: MIT
// The window systems that the build has; private to platform/window/systems.
#pragma once

#include <span>

#include "platform/window/WindowSystemKind.h"

namespace platform {

// In the order in which the session is asked for them; never empty.
[[nodiscard]] std::span<const WindowSystemKind* const> windowSystemKinds();

// The kind that Qt runs on; null where Qt runs on none of them.
[[nodiscard]] const WindowSystemKind* qtsKind();
// The kind that the program's windows are on: Qt's, or else the first.
[[nodiscard]] const WindowSystemKind& programsKind();

}  // namespace platform
