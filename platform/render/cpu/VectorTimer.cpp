// SPDX-License-Identifier: MIT
// The vector library's timer. While the library is loaded, it measures how fine that timer is,
// for benchmarks of its own, and every start of a program takes 3 ms longer. No code here
// reads the timer. The loader finds this definition before the library's.
#include <hwy/nanobenchmark.h>

namespace hwy::platform {

uint64_t TimerResolution() {
    return 1;
}

}  // namespace hwy::platform
