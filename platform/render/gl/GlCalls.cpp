// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlCalls.h"

#include "platform/render/egl/EglCalls.h"

namespace platform {

#define GL_CALL(type, name) type name = nullptr;
#define GL_EXTENSION_CALL(type, name) type name = nullptr;
#include "platform/render/gl/GlCalls.def"

namespace {

bool findAll() {
    bool complete = true;
#define GL_CALL(type, name)                             \
    name = reinterpret_cast<type>(eglAddressOf(#name)); \
    complete = complete && name;
#define GL_EXTENSION_CALL(type, name) name = reinterpret_cast<type>(eglAddressOf(#name));
#include "platform/render/gl/GlCalls.def"
    return complete;
}

}  // namespace

bool loadGl() {
    static const bool loaded = findAll();
    return loaded;
}

bool glOffers(std::string_view extension) {
    GLint count = 0;
    glGetIntegerv(GL_NUM_EXTENSIONS, &count);
    for (GLint i = 0; i < count; ++i) {
        const auto* const name =
            reinterpret_cast<const char*>(glGetStringi(GL_EXTENSIONS, static_cast<GLuint>(i)));
        if (name && extension == name) return true;
    }
    return false;
}

}  // namespace platform
