// SPDX-License-Identifier: MIT
// EGL's types, and its functions by their own names. No library links EGL: its functions are
// pointers, null until loadEgl() finds them, and a program that draws with the processor never
// loads it. Private to platform/render and to the window systems.
#pragma once

// The types of native displays and windows are pointers on every window system.
#define EGL_NO_PLATFORM_SPECIFIC_TYPES
#define EGL_EGL_PROTOTYPES 0
#include <EGL/egl.h>
#include <EGL/eglext.h>

#include <string_view>

namespace platform {

#define EGL_CALL(type, name) extern type name;
#define EGL_EXTENSION_CALL(type, name) extern type name;
#include "platform/render/egl/EglCalls.def"

// Loads EGL and finds its functions; false where the machine has none. The first call does the
// work, and the library then stays loaded. Any thread.
[[nodiscard]] bool loadEgl();

// The address of one of the driver's functions; null where it has none. Needs a loaded EGL. Any
// thread.
[[nodiscard]] void (*eglAddressOf(const char* name))();

// Whether a list of extensions, parted by spaces, holds this one. Any thread.
[[nodiscard]] bool listsExtension(std::string_view list, std::string_view extension);

}  // namespace platform
