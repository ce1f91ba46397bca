// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// Why the system refused something, from its error number, in words for the
// user: Dutch for what happens to people, the system's own for the rest. Any
// thread.
[[nodiscard]] QString reden(int nummer);

}  // namespace brixtel
