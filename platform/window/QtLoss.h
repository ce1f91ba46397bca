// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The loss of Qt's own connection to the window system, as a message of Qt's tells of it. Qt, or a
// library that Qt uses, ends the process right after any but None, with no Dutch line. Any thread;
// a plain value.
enum class QtLoss {
    None,
    Gone,     // the system went away
    Refused,  // the system broke the connection, for a reason of its own
    Fatal,    // the connection broke while Qt starts or ends
};

}  // namespace platform
