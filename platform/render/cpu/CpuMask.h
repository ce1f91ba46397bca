// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <vector>

#include "platform/layers/DisplayList.h"
#include "platform/render/PixelRect.h"
#include "platform/render/cpu/CpuPaint.h"

namespace platform {

// The masks of one display list, laid on a picture's pixels. Owns its memory and reuses
// it for the next drawing. The list must outlive the use. One thread at a time.
class CpuMasks {
  public:
    // Starts on a list. `longest` is the largest number of rows or pixels in one later
    // call. Call addPiece() for each piece next, in the list's order, then finish().
    void prepare(const DisplayList& list, int longest);
    void addPiece(const CpuPaint& piece) { pieces_.push_back(piece); }
    void finish();

    // The area outside which nothing shows under this mask (an index of the
    // list's) and its outer masks.
    [[nodiscard]] const PixelRect& bounds(std::int32_t mask) const {
        return bounds_[static_cast<std::size_t>(mask)];
    }

    // Whether, within `region`, each row has one alpha.
    [[nodiscard]] bool isEven(std::int32_t mask, const PixelRect& region) const;

    // Multiplies the alphas of the region's rows; requires isEven().
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
