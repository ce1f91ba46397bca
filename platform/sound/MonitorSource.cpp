// SPDX-License-Identifier: MIT
#include "platform/sound/MonitorSource.h"

#include <pulse/def.h>

namespace platform {

bool isMonitor(const pa_source_info& source) {
    return source.monitor_of_sink != PA_INVALID_INDEX;
}

}  // namespace platform
