// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace platform {

// The folder of the user's settings, a plain value; empty where neither XDG_CONFIG_HOME nor HOME
// names one. It need not exist. Any thread.
[[nodiscard]] QString configurationFolder();

}  // namespace platform
