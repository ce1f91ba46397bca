// SPDX-License-Identifier: MIT
// OpenGL's types, and its functions by their own names. No library links OpenGL: its functions are
// pointers, null until loadGl() finds them. Private to platform/render, its tests and benchmarks.
#pragma once

#include <GL/glcorearb.h>

#include <string_view>

namespace platform {

#define GL_CALL(type, name) extern type name;
#define GL_EXTENSION_CALL(type, name) extern type name;
#include "platform/render/gl/GlCalls.def"

// Finds OpenGL's functions; false where the driver lacks one that OpenGL 3.3 has. Needs a loaded
// EGL; the first call does the work. Any thread.
[[nodiscard]] bool loadGl();

// Whether the current context offers the extension.
[[nodiscard]] bool glOffers(std::string_view extension);

}  // namespace platform
