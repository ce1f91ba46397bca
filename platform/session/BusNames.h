// SPDX-License-Identifier: MIT
// The bus's own name, and its signal of who comes and goes; private to platform/session.
#pragma once

#include <QString>

namespace platform {

inline const QString kBusName = QStringLiteral("org.freedesktop.DBus");
inline const QString kBusPath = QStringLiteral("/org/freedesktop/DBus");
inline const QString kOwnerChanged = QStringLiteral("NameOwnerChanged");

}  // namespace platform
