// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

namespace brixtel {

// Whether an assistive program, such as a screen reader, runs in this session. The session's
// accessibility bus gives the answer, within 0.25 s; else the answer is no. Starts
// nothing.
[[nodiscard]] bool zijnHulpmiddelenInGebruik(const QDBusConnection& verbinding);

}  // namespace brixtel
