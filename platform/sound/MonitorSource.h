// SPDX-License-Identifier: MIT
// Private to platform/sound.
#pragma once

#include <pulse/introspect.h>

namespace platform {

// Whether a source records what an output plays; any other source may be a microphone.
[[nodiscard]] bool isMonitor(const pa_source_info& source);

}  // namespace platform
