// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <cstddef>

namespace brixtel {

// The address space of the rain, and of a scene on a software OpenGL.
inline constexpr std::size_t kRuimteRegen = std::size_t{256} << 20;
inline constexpr std::size_t kRuimteScene = std::size_t{768} << 20;

// Checks the resources that a program needs from the kernel at its start: threads,
// descriptors and `ruimte` bytes of address space. Returns the refused one as text for the
// user; empty if none is. The libraries hang or crash where the kernel refuses them. Main
// thread; takes less than a millisecond.
[[nodiscard]] QString tekort(std::size_t ruimte = kRuimteRegen);

// Makes any uncaught exception, on any thread, one line on standard error and exit status
// 1: the kernel refused memory or a thread. Keeps libdbus from ending the process, unless
// the environment says otherwise. `programma` must outlive the process's use of it. Main
// thread, before any other.
void eindigMetEenRegel(const char* programma);

// Ends the process with one line, and exit status 1, where `bericht`, a message of Qt's, says
// that the kernel refused Qt a thread: Qt 6.4 waits for that thread's work for ever. Any thread.
void eindigZonderDraad(const QString& bericht);

// Ends the process with one line that says that there is too little memory, and exit status
// 1. Allocates nothing; any thread.
[[noreturn]] void eindigZonderGeheugen();

}  // namespace brixtel
