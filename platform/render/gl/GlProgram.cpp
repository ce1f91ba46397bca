// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlProgram.h"

#include <cstdio>
#include <string>

namespace platform {

namespace {

void name(GLenum kind, GLuint object, const char* label) {
    if (glOffers("GL_KHR_debug")) glObjectLabel(kind, object, -1, label);
}

GLuint compile(const char* label, GLenum kind, std::string text, const char* definition) {
    const GLuint shader = glCreateShader(kind);
    // Only the version may stand above a definition.
    if (definition) text.insert(text.find('\n') + 1, "#define " + std::string(definition) + "\n");
    const char* const source = text.c_str();
    glShaderSource(shader, 1, &source, nullptr);
    glCompileShader(shader);
    GLint compiled = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
    if (compiled == GL_TRUE) return shader;
    std::string log(1024, '\0');
    GLsizei length = 0;
    glGetShaderInfoLog(shader, static_cast<GLsizei>(log.size()), &length, log.data());
    std::fprintf(stderr, "%s (%s): %.*s\n", label, kind == GL_VERTEX_SHADER ? "vertex" : "fragment",
                 length, log.c_str());
    glDeleteShader(shader);
    return 0;
}

}  // namespace

GlProgram::GlProgram(const char* label, const char* vertexText, const char* fragmentText,
                     const char* definition) {
    const GLuint vertex = compile(label, GL_VERTEX_SHADER, vertexText, nullptr);
    const GLuint fragment = compile(label, GL_FRAGMENT_SHADER, fragmentText, definition);
    if (vertex && fragment) {
        name_ = glCreateProgram();
        glAttachShader(name_, vertex);
        glAttachShader(name_, fragment);
        glLinkProgram(name_);
        GLint linked = GL_FALSE;
        glGetProgramiv(name_, GL_LINK_STATUS, &linked);
        if (linked == GL_TRUE) {
            name(GL_PROGRAM, name_, label);
        } else {
            std::string log(1024, '\0');
            GLsizei length = 0;
            glGetProgramInfoLog(name_, static_cast<GLsizei>(log.size()), &length, log.data());
            std::fprintf(stderr, "%s (link): %.*s\n", label, length, log.c_str());
            glDeleteProgram(std::exchange(name_, 0));
        }
    }
    glDeleteShader(vertex);
    glDeleteShader(fragment);
}

GlProgram::~GlProgram() {
    glDeleteProgram(name_);
}

GlTexelBuffer::GlTexelBuffer(const char* label, GLenum format) : label_(label), format_(format) {
    glGenTextures(1, &texture_);
    glGenBuffers(1, &buffer_);
}

GlTexelBuffer::~GlTexelBuffer() {
    glDeleteTextures(1, &texture_);
    glDeleteBuffers(1, &buffer_);
}

void GlTexelBuffer::bindTo(int unit) const {
    glActiveTexture(GL_TEXTURE0 + static_cast<GLenum>(unit));
    glBindTexture(GL_TEXTURE_BUFFER, texture_);
}

void GlTexelBuffer::attach() {
    glBindTexture(GL_TEXTURE_BUFFER, texture_);
    glTexBuffer(GL_TEXTURE_BUFFER, format_, buffer_);
    name(GL_BUFFER, buffer_, label_);
    name(GL_TEXTURE, texture_, label_);
}

void GlTexelBuffer::renew(GLsizeiptr bytes, GLenum usage) {
    const bool first = size_ == 0;
    glBindBuffer(GL_TEXTURE_BUFFER, buffer_);
    glBufferData(GL_TEXTURE_BUFFER, bytes, nullptr, usage);
    size_ = bytes;
    if (first) attach();
}

void GlTexelBuffer::grow(GLsizeiptr bytes, GLsizeiptr kept) {
    const GLuint old = buffer_;
    glGenBuffers(1, &buffer_);
    glBindBuffer(GL_TEXTURE_BUFFER, buffer_);
    glBufferData(GL_TEXTURE_BUFFER, bytes, nullptr, GL_STATIC_DRAW);
    if (kept > 0) {
        glBindBuffer(GL_COPY_READ_BUFFER, old);
        glCopyBufferSubData(GL_COPY_READ_BUFFER, GL_TEXTURE_BUFFER, 0, 0, kept);
    }
    size_ = bytes;
    attach();
    glDeleteBuffers(1, &old);
}

void GlTexelBuffer::write(GLintptr at, GLsizeiptr bytes, const void* data) {
    glBindBuffer(GL_TEXTURE_BUFFER, buffer_);
    glBufferSubData(GL_TEXTURE_BUFFER, at, bytes, data);
}

}  // namespace platform
