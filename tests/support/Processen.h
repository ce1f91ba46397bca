// SPDX-License-Identifier: MIT
// What a test wants to know of this process and its children.
#pragma once

#include <malloc.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <iterator>

namespace steun {

// Open descriptors of this process, less the one that counting takes.
inline long descriptors() {
    const std::filesystem::directory_iterator eerste("/proc/self/fd");
    return std::distance(eerste, std::filesystem::directory_iterator()) - 1;
}

// Whether there is any child, running or waiting to be asked after.
inline bool heeftKinderen() {
    siginfo_t info{};
    return waitid(P_ALL, 0, &info, WEXITED | WNOHANG | WNOWAIT) == 0 || errno != ECHILD;
}

// Bytes that this process has allocated and not freed; 0 under a sanitizer,
// which has an allocator of its own.
inline std::size_t geheugenInGebruik() {
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

}  // namespace steun
