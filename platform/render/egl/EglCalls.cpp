// SPDX-License-Identifier: MIT
#include "platform/render/egl/EglCalls.h"

#include <dlfcn.h>

namespace platform {

#define EGL_CALL(type, name) type name = nullptr;
#define EGL_EXTENSION_CALL(type, name) type name = nullptr;
#include "platform/render/egl/EglCalls.def"

namespace {

PFNEGLGETPROCADDRESSPROC addressOf = nullptr;

bool findAll() {
    void* const library = dlopen("libEGL.so.1", RTLD_LAZY | RTLD_LOCAL);
    if (!library) return false;
    addressOf = reinterpret_cast<PFNEGLGETPROCADDRESSPROC>(dlsym(library, "eglGetProcAddress"));
    bool complete = addressOf != nullptr;
#define EGL_CALL(type, name)                              \
    name = reinterpret_cast<type>(dlsym(library, #name)); \
    complete = complete && name;
#define EGL_EXTENSION_CALL(type, name) \
    if (addressOf) name = reinterpret_cast<type>(addressOf(#name));
#include "platform/render/egl/EglCalls.def"
    return complete;
}

}  // namespace

bool loadEgl() {
    static const bool loaded = findAll();
    return loaded;
}

void (*eglAddressOf(const char* name))() {
    return addressOf(name);
}

bool listsExtension(std::string_view list, std::string_view extension) {
    while (!list.empty()) {
        const std::size_t end = list.find(' ');
        if (list.substr(0, end) == extension) return true;
        list = end == std::string_view::npos ? std::string_view() : list.substr(end + 1);
    }
    return false;
}

}  // namespace platform
