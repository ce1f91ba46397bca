// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>

namespace brixtel {

// The address space that the rain takes, and that a scene takes on a software OpenGL.
inline constexpr std::size_t kRuimteRegen = std::size_t{256} << 20;
inline constexpr std::size_t kRuimteScene = std::size_t{768} << 20;

// What a program of this system needs from the kernel at its start: threads,
// descriptors and so many bytes of address space. Returns what is refused, for the
// user; empty if nothing is. The libraries below hang or crash where the kernel
// refuses them. Main thread; takes less than a millisecond.
[[nodiscard]] QString tekort(std::size_t ruimte = kRuimteRegen);

// From now on an exception that nobody catches, on any thread, is one line on
// standard error and exit status 1: the kernel refused memory or a thread.
// `programma` must outlive the process's use of it.
void eindigMetEenRegel(const char* programma);

}  // namespace brixtel
