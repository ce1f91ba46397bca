// SPDX-License-Identifier: MIT
// Starting a process; private to platform/process.
#pragma once

#include <sys/types.h>

#include "platform/process/ToolRun.h"

namespace platform {

// The child's exit status when the program could not be executed.
inline constexpr int kNotStarted = 127;

// Starts a process that leads its own group and writes to `output`; -1 on
// failure.
pid_t startTool(const ToolCall& call, int output);

}  // namespace platform
