// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlDrawer.h"

#include <algorithm>
#include <optional>

#include "platform/render/gl/GlPictures.h"
#include "platform/render/gl/GlProgram.h"
#include "platform/render/gl/GlRecords.h"
#include "rects.frag.h"
#include "rects.vert.h"

namespace platform {

namespace {

constexpr int kRecordUnit = 0;
constexpr int kPictureUnit = 1;
constexpr GLsizeiptr kRecordBytes = sizeof(GlRecords::Record);

int atMost(int wanted, GLint offered) {
    return wanted > 0 ? std::min(wanted, offered) : offered;
}

GLint offeredTexels() {
    GLint texels = 0;
    glGetIntegerv(GL_MAX_TEXTURE_BUFFER_SIZE, &texels);
    return texels;
}

// The program of rects.vert and rects.frag, and its uniforms' locations.
struct RectProgram {
    RectProgram(const char* label, const char* definition)
        : program(label, kRectsVert, kRectsFrag, definition) {
        if (!program.isValid()) return;
        program.use();
        glUniform1i(program.uniform("records"), kRecordUnit);
        glUniform1i(program.uniform("pictures"), kPictureUnit);
        firstRect = program.uniform("firstRect");
        pixelSize = program.uniform("pixelSize");
    }

    GlProgram program;
    GLint firstRect = -1;
    GLint pixelSize = -1;
};

}  // namespace

struct GlDrawer::Parts {
    explicit Parts(const Options& options)
        : plain("display list", nullptr),
          recordBuffer("records", GL_RGBA32I),
          pictures(atMost(options.maxTexels, offeredTexels()), options.keepDraws),
          records(pictures, static_cast<std::size_t>(atMost(options.maxRecords, offeredTexels()))) {
        glGenVertexArrays(1, &vertices);
    }
    ~Parts() { glDeleteVertexArrays(1, &vertices); }
    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    // Sets the state that every list needs, but the blending.
    void begin(const PixelGrid& grid);
    void add(const DisplayList& list, const PixelGrid& grid);
    void flush();
    RectProgram& program();

    RectProgram plain;
    // Compiled on first need: many programs never need it.
    std::optional<RectProgram> everything;
    GlTexelBuffer recordBuffer;
    GlPictures pictures;
    GlRecords records;
    GLuint vertices = 0;  // no attributes; core profile requires a bound array
    DisplayList veil;     // of fade()
    QSize size;
    int drawCalls = 0;
};

std::unique_ptr<GlDrawer> GlDrawer::create(const Options& options) {
    auto parts = std::make_unique<Parts>(options);
    if (!parts->plain.program.isValid()) return nullptr;
    return std::unique_ptr<GlDrawer>(new GlDrawer(std::move(parts)));
}

GlDrawer::GlDrawer(std::unique_ptr<Parts> parts) : parts_(std::move(parts)) {}

GlDrawer::~GlDrawer() = default;

int GlDrawer::drawCalls() const {
    return parts_->drawCalls;
}

int GlDrawer::pictureCount() const {
    return parts_->pictures.count();
}

void GlDrawer::draw(const DisplayList& list, const PixelGrid& grid,
                    std::optional<Rgba> background) {
    Parts& p = *parts_;
    p.drawCalls = 0;
    if (grid.size.isEmpty()) return;
    p.begin(grid);
    if (background) {
        glClearColor(background->r, background->g, background->b, background->a);
        glClear(GL_COLOR_BUFFER_BIT);
    }
    glBlendFunc(GL_ONE, GL_ONE_MINUS_SRC_ALPHA);
    p.add(list, grid);
    p.pictures.endDraw();
}

void GlDrawer::fade(const PixelGrid& grid, double opacity) {
    Parts& p = *parts_;
    if (grid.size.isEmpty()) return;
    p.begin(grid);
    p.veil.items.resize(1);
    DisplayItem& item = p.veil.items.front();
    item.rect = item.clip = {QPointF(0, 0), QSizeF(grid.size) / grid.scale};
    item.colour = {0.0F, 0.0F, 0.0F, static_cast<float>(1.0 - opacity)};
    // The veil adds nothing to the picture, and lets a part through.
    glBlendFunc(GL_ZERO, GL_ONE_MINUS_SRC_ALPHA);
    p.add(p.veil, grid);
}

void GlDrawer::Parts::begin(const PixelGrid& grid) {
    glDisable(GL_SCISSOR_TEST);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_STENCIL_TEST);
    glDisable(GL_CULL_FACE);
    glDisable(GL_FRAMEBUFFER_SRGB);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glViewport(0, 0, grid.size.width(), grid.size.height());
    glEnable(GL_BLEND);
    glBlendEquation(GL_FUNC_ADD);
    size = grid.size;
}

void GlDrawer::Parts::add(const DisplayList& list, const PixelGrid& grid) {
    records.begin(list, grid);
    for (const DisplayItem& item : list.items) {
        if (records.add(item)) continue;
        flush();
        // An item too large even for a draw call alone is left out.
        records.add(item);
    }
    flush();
}

RectProgram& GlDrawer::Parts::program() {
    if (!records.wantsEverything()) return plain;
    if (!everything) everything.emplace("any display list", "EVERYTHING");
    return *everything;
}

void GlDrawer::Parts::flush() {
    const auto count = static_cast<GLsizei>(records.rectCount());
    if (count > 0) {
        const std::size_t first = records.finish();
        const auto bytes = static_cast<GLsizeiptr>(records.records().size()) * kRecordBytes;
        recordBuffer.bindTo(kRecordUnit);
        recordBuffer.renew(std::max(bytes, recordBuffer.size()), GL_STREAM_DRAW);
        recordBuffer.write(0, bytes, records.records().data());
        pictures.bindTo(kPictureUnit);
        const RectProgram& with = program();
        with.program.use();
        glUniform1i(with.firstRect, static_cast<GLint>(first));
        glUniform2f(with.pixelSize, 1.0F / static_cast<float>(size.width()),
                    1.0F / static_cast<float>(size.height()));
        glBindVertexArray(vertices);
        glDrawArraysInstanced(GL_TRIANGLE_STRIP, 0, 4, count);
        ++drawCalls;
    }
    records.restart();
}

}  // namespace platform
