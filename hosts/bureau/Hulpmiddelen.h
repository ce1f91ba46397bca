// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

namespace brixtel {

// Whether an assistive program, such as a screen reader, runs in this session, as the
// session's accessibility bus says. Starts nothing, and waits at most 0.25 s for the
// answer.
[[nodiscard]] bool zijnHulpmiddelenInGebruik(const QDBusConnection& verbinding);

}  // namespace brixtel
