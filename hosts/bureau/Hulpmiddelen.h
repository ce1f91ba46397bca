// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

namespace brixtel {

// Whether a screen reader or its like is at work in this session, as its
// accessibility bus says. Starts nothing, and waits no longer than a quarter of a
// second for the answer.
[[nodiscard]] bool zijnHulpmiddelenInGebruik(const QDBusConnection& verbinding);

}  // namespace brixtel
