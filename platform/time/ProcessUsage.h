// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// What this process has cost so far.
struct ProcessUsage {
    double cpuSeconds = 0.0;    // user and system time of all its threads
    double peakMemoryMb = 0.0;  // largest resident set, in MiB
};

[[nodiscard]] ProcessUsage processUsage();

// User and system time of the calling thread so far, in seconds.
[[nodiscard]] double threadCpuSeconds();

// Seconds since the kernel started this process, dynamic linking included, to
// the hundredth that the kernel keeps. 0 when /proc cannot tell.
[[nodiscard]] double secondsSinceProcessStart();

// Gives memory that was used and freed back to the system, of which the allocator
// would keep a part for each thread that there was. Takes some milliseconds.
void releaseFreeMemory();

}  // namespace platform
