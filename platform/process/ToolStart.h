// SPDX-License-Identifier: MIT
// Starting a process; private to platform/process.
#pragma once

#include <sys/types.h>

#include "platform/process/ToolRun.h"

namespace platform {

// What a child exits with when the program could not be executed.
inline constexpr int kNotStarted = 127;

// The new process, which leads a group of its own and writes to `output`; -1
// when there can be none.
pid_t startTool(const ToolCall& call, int output);

}  // namespace platform
