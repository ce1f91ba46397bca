// SPDX-License-Identifier: MIT
#include "platform/time/ProcessUsage.h"

#include <malloc.h>
#include <sys/resource.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace platform {

namespace {

// Reads /proc, because a program inherits ru_maxrss from the program that started it.
double peakMemoryMb() {
    std::ifstream file("/proc/self/status");
    std::string line;
    while (std::getline(file, line)) {
        if (line.rfind("VmHWM:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
    }
    return 0.0;
}

double secondsOf(clockid_t clock) {
    timespec spent{};
    clock_gettime(clock, &spent);
    return static_cast<double>(spent.tv_sec) + 1e-9 * static_cast<double>(spent.tv_nsec);
}

}  // namespace

ProcessUsage processUsage() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval& t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) * 1e-6;
    };
    return {.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime),
            .peakMemoryMb = peakMemoryMb()};
}

double processCpuSeconds() {
    return secondsOf(CLOCK_PROCESS_CPUTIME_ID);
}

int processorCount() {
    return std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

double threadCpuSeconds() {
    return secondsOf(CLOCK_THREAD_CPUTIME_ID);
}

double secondsSinceProcessStart() {
    std::ifstream file("/proc/self/stat");
    std::string line;
    if (!std::getline(file, line)) return 0.0;
    // The program's name, in parentheses, may hold spaces. Fields count from the
    // closing parenthesis, before field 3; the start time is field 22 (proc(5)).
    std::istringstream fields(line.substr(line.rfind(')') + 1));
    std::string skipped;
    for (int field = 3; field < 22; ++field)
        fields >> skipped;
    double ticks = 0.0;
    if (!(fields >> ticks)) return 0.0;
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9 -
           ticks / static_cast<double>(sysconf(_SC_CLK_TCK));
}

void releaseFreeMemory() {
    malloc_trim(0);
}

}  // namespace platform
