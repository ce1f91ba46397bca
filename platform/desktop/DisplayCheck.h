// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// Whether the X server that the environment names answers. Qt would end the
// program with a crash where it does not.
[[nodiscard]] bool isDisplayReachable();

}  // namespace platform
