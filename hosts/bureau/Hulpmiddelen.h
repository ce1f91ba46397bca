// SPDX-License-Identifier: MIT
#pragma once

#include <QDBusConnection>

namespace brixtel {

// Lets assistive technology find this program's windows. Qt looks for it on the
// session bus, which is kept from Qt here; so the accessibility bus is looked up on
// this connection and told to Qt by the environment. Where none is in use nothing
// happens, and nothing is started. Waits for the bus, a quarter of a second at most
// for each question. Main thread, before the first window that is to be found.
void zoekHulpmiddelen(const QDBusConnection& verbinding);

}  // namespace brixtel
