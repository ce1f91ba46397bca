// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// The cost of this process so far. A value; all functions here: any thread.
struct ProcessUsage {
    double cpuSeconds = 0.0;    // user and system time of all its threads
    double peakMemoryMb = 0.0;  // largest resident set, in MiB
};

[[nodiscard]] ProcessUsage processUsage();

// User and system time of the calling thread so far, in seconds.
[[nodiscard]] double threadCpuSeconds();

// Seconds since the kernel started this process, dynamic linking included;
// resolution 0.01 s. 0 when /proc cannot tell.
[[nodiscard]] double secondsSinceProcessStart();

// Gives freed memory back to the system; the allocator would keep a part per
// thread. Takes some milliseconds.
void releaseFreeMemory();

}  // namespace platform
