// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/render/PixelRect.h"
#include "platform/render/cpu/CpuPaint.h"

namespace platform {

// The masks of one display list laid on a picture's pixels. Reused from drawing
// to drawing for its memory. The list must outlive the use.
class CpuMasks {
  public:
    // `longest` is the most rows or pixels that will be asked for at once. The
    // pieces follow, in the list's order.
    void prepare(const DisplayList& list, int longest);
    void addPiece(const CpuPaint& piece) { pieces_.push_back(piece); }
    void finish();

    // Beyond it nothing shows under this mask (an index of the list's) and those
    // that it lies in.
    [[nodiscard]] const PixelRect& bounds(std::int32_t mask) const {
        return bounds_[static_cast<std::size_t>(mask)];
    }

    // Whether within `region` every pixel of a row has the same alpha.
    [[nodiscard]] bool isEven(std::int32_t mask, const PixelRect& region) const;

    // Multiplies the alphas of the region's rows, where isEven.
    void multiplyRows(std::int32_t mask, const PixelRect& region, float* alphas);

    // Multiplies the alphas of `count` pixels from (x, y) rightward.
    void multiplyPixels(std::int32_t mask, int x, int y, int count, float* alphas);

  private:
    [[nodiscard]] const DisplayMask& at(std::int32_t mask) const {
        return list_->masks[static_cast<std::size_t>(mask)];
    }
    [[nodiscard]] std::span<const CpuPaint> piecesOf(std::int32_t mask) const {
        return std::span(pieces_).subspan(at(mask).firstPiece, at(mask).pieceCount);
    }

    const DisplayList* list_ = nullptr;
    std::vector<CpuPaint> pieces_;
    std::vector<PixelRect> bounds_;
    std::vector<float> all_, one_;
    std::vector<Rgba> colours_;
};

}  // namespace platform
