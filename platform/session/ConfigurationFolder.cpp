// SPDX-License-Identifier: MIT
#include "platform/session/ConfigurationFolder.h"

#include <QStandardPaths>

namespace platform {

// Qt takes the root of the file system for the home of a user without one.
QString configurationFolder() {
    if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME") && qEnvironmentVariableIsEmpty("HOME"))
        return {};
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

}  // namespace platform
