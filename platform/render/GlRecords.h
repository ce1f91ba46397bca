// SPDX-License-Identifier: MIT
// Display lists as the shader reads them; private to platform/render.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/render/GlPictures.h"
#include "platform/render/PixelRect.h"

namespace platform {

// Writes items and their masks as records of four numbers (rects.frag says
// which) and notes the rectangles to draw: where an item shows something and,
// under a mask, only where a piece of it lies. Reuses its memory.
class GlRecords {
  public:
    using Record = std::array<std::int32_t, 4>;
    struct Rect {
        PixelRect box;
        std::int32_t paint;
    };

    // `limit` is how many records one draw call may have.
    GlRecords(GlPictures& pictures, std::size_t limit) : pictures_(pictures), limit_(limit) {}

    // Starts on a list, which must stay while items of it are added.
    void begin(const DisplayList& list, const PixelGrid& grid);

    // False if there is no room for it beside what is there; then nothing was
    // added.
    bool add(const DisplayItem& item);

    // Appends the rectangles to the records, two each, and says where they
    // begin. Then all is there for a draw call.
    std::size_t finish();
    // Drops the records and rectangles, to add further items of the list.
    void restart();

    [[nodiscard]] const std::vector<Record>& records() const { return records_; }
    [[nodiscard]] std::size_t rectCount() const { return rects_.size(); }

  private:
    void addVisible(const DisplayItem& item, const PixelRect& box);
    void addRects(const DisplayItem& item, const PixelRect& box);
    // Where the mask stands among the records, after writing it if need be.
    std::int32_t maskRecord(std::int32_t mask);
    // The four records of a paint, the last one left to the caller. Returns the
    // box to which a picture shown pixel for pixel reaches, else the snapped one.
    PixelRect paint(const DisplayItem& item, std::size_t at);
    PixelRect paintPicture(const DisplayItem& item, std::size_t at, const PixelRect& rect);
    void paintGradient(const DisplayItem& item, std::size_t at);
    std::size_t append(std::size_t count);

    static std::int32_t bits(double value) {
        return std::bit_cast<std::int32_t>(static_cast<float>(value));
    }

    GlPictures& pictures_;
    std::size_t limit_;
    const DisplayList* list_ = nullptr;
    PixelGrid grid_;
    PixelRect screen_;
    std::vector<Record> records_;
    std::vector<Rect> rects_;
    std::vector<std::int32_t> maskRecords_;  // by mask; -1 while not written
    std::vector<PixelRect> boxes_;
};

}  // namespace platform
