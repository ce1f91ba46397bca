// SPDX-License-Identifier: MIT
// Display lists in the shader's format; private to platform/render.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/layers/PixelGrid.h"
#include "platform/render/PixelRect.h"
#include "platform/render/gl/GlPictures.h"

namespace platform {

// Writes items and their masks as records of four numbers for rects.frag, and
// lists the rectangles to draw: an item's visible part, and under a mask only
// the parts that a piece covers. Reuses its memory.
//
// An item has three records; a rectangle names the first:
//   head   kind; opacity; the item's mask, -1 for none
//   form   colour: itself                   gradient: along x, along y, offset
//          exact picture: left, high edge, width, first texel
//          stretched picture: along x, offset, along y, offset
//   extra  gradient: first stop, how many   stretched: first texel, width, height
// A mask is one record (the mask around it, how many pieces) and four for each
// piece: edges, form, extra, head. Its pieces are pictures or slopes: form is
// along x, along y, offset and the alpha before the first rise; extra is the
// first rise and how many. A rise is one record: where, how steep, how high.
// A stop is two: location; colour. A rectangle is two: its edges; its item.
class GlRecords {
  public:
    using Record = std::array<std::int32_t, 4>;
    struct Rect {
        PixelRect box;
        std::int32_t paint;
    };

    // `limit` is the most records of one draw call.
    GlRecords(GlPictures& pictures, std::size_t limit) : pictures_(pictures), limit_(limit) {}

    // Starts on a list, which must outlive the adding of its items.
    void begin(const DisplayList& list, const PixelGrid& grid);

    // Adds an item; false, with nothing added, if there is no room.
    bool add(const DisplayItem& item);

    // Appends the rectangles to the records, two each, and returns their first
    // index. A draw call can follow.
    std::size_t finish();
    // Drops the records and rectangles, for further items of the list.
    void restart();

    [[nodiscard]] const std::vector<Record>& records() const { return records_; }
    [[nodiscard]] std::size_t rectCount() const { return rects_.size(); }
    // Whether rects.frag must have EVERYTHING defined.
    [[nodiscard]] bool wantsEverything() const { return wantsEverything_; }

  private:
    void reserve();
    void addVisible(const DisplayItem& item, const PixelRect& box);
    void addRects(const DisplayItem& item, const PixelRect& box);
    // The mask's index among the records; writes it first if needed.
    std::int32_t maskRecord(std::int32_t mask);
    // The records that an item and a piece have in common.
    struct Paint {
        Record head{}, form{}, extra{};
        // The reach: a picture shown pixel for pixel has its own size, anything
        // else the snapped rectangle. Empty if there is nothing.
        PixelRect reach;
    };
    Paint paint(const DisplayItem& item);
    Paint paintPicture(const DisplayItem& item, const PixelRect& rect);
    Paint paintGradient(const DisplayItem& item, const PixelRect& rect);
    // A gradient's axis, as a pixel's position along it in [0, 1].
    [[nodiscard]] Record axis(const DisplayItem& item) const;
    Paint paintPiece(const DisplayItem& piece);
    std::size_t append(std::size_t count);

    static std::int32_t bits(double value) {
        return std::bit_cast<std::int32_t>(static_cast<float>(value));
    }

    GlPictures& pictures_;
    std::size_t limit_;
    const DisplayList* list_ = nullptr;
    PixelGrid grid_;
    PixelRect screen_;
    bool wantsEverything_ = false;
    std::vector<Record> records_;
    std::vector<Rect> rects_;
    std::vector<std::int32_t> maskRecords_;  // by mask; -1 until written
    std::vector<PixelRect> boxes_;
};

}  // namespace platform
