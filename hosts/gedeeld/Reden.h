// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// The system's reason for a refusal, by its error number, as text for the user: the
// number itself for errors that users do not meet. Any thread.
[[nodiscard]] QString reden(int nummer);

}  // namespace brixtel
