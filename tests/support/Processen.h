// SPDX-License-Identifier: MIT
// Facts about this process and its children.
#pragma once

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace steun {

// The open descriptors of this process, without the one used for counting.
inline long descriptors() {
    const std::filesystem::directory_iterator eerste("/proc/self/fd");
    return std::distance(eerste, std::filesystem::directory_iterator()) - 1;
}

// The threads of this process.
inline long draden() {
    const std::filesystem::directory_iterator eerste("/proc/self/task");
    return std::distance(eerste, std::filesystem::directory_iterator());
}

// Whether any child exists, running or not yet waited for.
inline bool heeftKinderen() {
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

// Bytes allocated and not freed by this process; 0 under a sanitizer, which has
// its own allocator.
inline std::size_t geheugenInGebruik() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// Bytes of memory that the kernel holds for this process; 0 under a sanitizer, which keeps
// what was freed.
inline std::size_t geheugenBijDeKern() {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    return 0;
#else
    std::size_t bladzijden = 0, aanwezig = 0;
    std::ifstream("/proc/self/statm") >> bladzijden >> aanwezig;
    return aanwezig * static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
#endif
}

}  // namespace steun
