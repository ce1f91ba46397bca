// SPDX-License-Identifier: MIT
// Private to platform/sound.
#pragma once

#include <pulse/introspect.h>

namespace platform {

// Whether a source hears what an output plays; anything else may be a microphone.
[[nodiscard]] bool isMonitor(const pa_source_info& source);

}  // namespace platform
