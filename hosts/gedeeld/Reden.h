// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The system's reason for a refusal, by its error number, as text for the user: Dutch for
// the errors that users meet, the system's own text for the others. Any thread.
[[nodiscard]] QString reden(int nummer);

}  // namespace brixtel
