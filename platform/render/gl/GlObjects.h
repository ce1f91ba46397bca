// SPDX-License-Identifier: MIT
// Owners of OpenGL objects; private to platform/render. An object's context must be
// current while the object is made and dropped; a moved-from owner owns nothing.
#pragma once

#include <utility>

#include "platform/render/gl/GlCalls.h"

namespace platform {

template <typename Kind>
class GlObject {
  public:
    GlObject() = default;
    [[nodiscard]] static GlObject make() {
        GlObject object;
        Kind::make(&object.name_);
        return object;
    }
    ~GlObject() {
        if (name_ != 0) Kind::drop(&name_);
    }
    GlObject(GlObject&& other) noexcept : name_(std::exchange(other.name_, 0)) {}
    GlObject& operator=(GlObject&& other) noexcept {
        std::swap(name_, other.name_);
        return *this;
    }

    [[nodiscard]] GLuint name() const { return name_; }

  private:
    GLuint name_ = 0;
};

struct GlTextureKind {
    static void make(GLuint* name) { glGenTextures(1, name); }
    static void drop(const GLuint* name) { glDeleteTextures(1, name); }
};
struct GlBufferKind {
    static void make(GLuint* name) { glGenBuffers(1, name); }
    static void drop(const GLuint* name) { glDeleteBuffers(1, name); }
};
struct GlRenderbufferKind {
    static void make(GLuint* name) { glGenRenderbuffers(1, name); }
    static void drop(const GLuint* name) { glDeleteRenderbuffers(1, name); }
};
struct GlFramebufferKind {
    static void make(GLuint* name) { glGenFramebuffers(1, name); }
    static void drop(const GLuint* name) { glDeleteFramebuffers(1, name); }
};
struct GlVertexArrayKind {
    static void make(GLuint* name) { glGenVertexArrays(1, name); }
    static void drop(const GLuint* name) { glDeleteVertexArrays(1, name); }
};
struct GlQueryKind {
    static void make(GLuint* name) { glGenQueries(1, name); }
    static void drop(const GLuint* name) { glDeleteQueries(1, name); }
};

using GlTexture = GlObject<GlTextureKind>;
using GlBuffer = GlObject<GlBufferKind>;
using GlRenderbuffer = GlObject<GlRenderbufferKind>;
using GlFramebuffer = GlObject<GlFramebufferKind>;
using GlVertexArray = GlObject<GlVertexArrayKind>;
using GlQuery = GlObject<GlQueryKind>;

}  // namespace platform
