// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace brixtel {

// What a program of this system needs from the kernel at its start: threads,
// descriptors and address space. Returns what is refused, for the user; empty if
// nothing is. The libraries below hang or crash where the kernel refuses them.
// Main thread; takes less than a millisecond.
[[nodiscard]] QString tekort();

// From now on an exception that nobody catches, on any thread, is one line on
// standard error and exit status 1: the kernel refused memory or a thread.
// `programma` must outlive the process's use of it.
void eindigMetEenRegel(const char* programma);

}  // namespace brixtel
