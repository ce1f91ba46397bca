// SPDX-License-Identifier: MIT
// Owners of OpenGL objects; private to platform/render. An object's context
// must be current while the object lives and when it is dropped.
#pragma once

#include <utility>

#include "platform/render/gl/GlCalls.h"

namespace platform {

// A linked vertex and fragment shader.
class GlProgram {
  public:
    // A failure leaves an invalid program, and a line on standard error that begins
    // with the label. `definition`, if any, is defined for the fragment shader.
    GlProgram(const char* label, const char* vertexText, const char* fragmentText,
              const char* definition = nullptr);
    ~GlProgram();
    GlProgram(const GlProgram&) = delete;
    GlProgram& operator=(const GlProgram&) = delete;

    [[nodiscard]] bool isValid() const { return name_ != 0; }
    void use() const { glUseProgram(name_); }
    [[nodiscard]] GLint uniform(const char* name) const {
        return glGetUniformLocation(name_, name);
    }

  private:
    GLuint name_ = 0;
};

// A buffer that shaders read as texels of one format.
class GlTexelBuffer {
  public:
    GlTexelBuffer(const char* label, GLenum format);
    ~GlTexelBuffer();
    GlTexelBuffer(const GlTexelBuffer&) = delete;
    GlTexelBuffer& operator=(const GlTexelBuffer&) = delete;

    void bindTo(int unit) const;

    // Makes a new store of that size with undefined contents; drawing in
    // progress keeps the old store.
    void renew(GLsizeiptr bytes, GLenum usage);
    // Makes a new store, keeping the first `kept` bytes.
    void grow(GLsizeiptr bytes, GLsizeiptr kept);
    void write(GLintptr at, GLsizeiptr bytes, const void* data);
    [[nodiscard]] GLsizeiptr size() const { return size_; }

  private:
    void attach();

    const char* label_;
    GLenum format_;
    GLuint buffer_ = 0;
    GLuint texture_ = 0;
    GLsizeiptr size_ = 0;
};

}  // namespace platform
