// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuMask.h"

#include <algorithm>

namespace platform {

namespace {

// Combines one piece's alphas with those of the pieces below.
void compose(float* below, const float* above, int count) {
    for (int i = 0; i < count; ++i)
        below[i] += above[i] - below[i] * above[i];
}

void multiply(float* alphas, const float* by, int count) {
    for (int i = 0; i < count; ++i)
        alphas[i] *= by[i];
}

}  // namespace

void CpuMasks::prepare(const DisplayList& list, int longest) {
    list_ = &list;
    pieces_.clear();
    pieces_.reserve(list.pieces.capacity());
    all_.resize(static_cast<std::size_t>(longest));
    one_.resize(all_.size());
    colours_.resize(all_.size());
}

void CpuMasks::finish() {
    bounds_.clear();
    bounds_.reserve(list_->masks.capacity());
    for (std::size_t i = 0; i < list_->masks.size(); ++i) {
        const auto mask = static_cast<std::int32_t>(i);
        PixelRect bounds;
        for (const CpuPaint& piece : piecesOf(mask))
            bounds = bounds | piece.shown();
        // An outer mask comes before its inner masks in the list.
        if (at(mask).outer >= 0) bounds = bounds & this->bounds(at(mask).outer);
        bounds_.push_back(bounds);
    }
}

bool CpuMasks::isEven(std::int32_t mask, const PixelRect& region) const {
    for (; mask >= 0; mask = at(mask).outer) {
        for (const CpuPaint& piece : piecesOf(mask)) {
            const PixelRect common = piece.shown() & region;
            if (common.isEmpty()) continue;
            if (!piece.isEvenAlongRows() || common.width() != region.width()) return false;
        }
    }
    return true;
}

void CpuMasks::multiplyRows(std::int32_t mask, const PixelRect& region, float* alphas) {
    const int count = region.height();
    float* const all = all_.data();
    float* const one = one_.data();
    for (; mask >= 0; mask = at(mask).outer) {
        std::fill_n(all, count, 0.0F);
        for (const CpuPaint& piece : piecesOf(mask)) {
            const PixelRect common = piece.shown() & region;
            if (common.isEmpty()) continue;
            piece.rowAlphas(common.y0, common.height(), one);
            compose(all + (common.y0 - region.y0), one, common.height());
        }
        multiply(alphas, all, count);
    }
}

void CpuMasks::multiplyPixels(std::int32_t mask, int x, int y, int count, float* alphas) {
    const PixelRect run{x, y, x + count, y + 1};
    float* const all = all_.data();
    float* const one = one_.data();
    Rgba* const colours = colours_.data();
    for (; mask >= 0; mask = at(mask).outer) {
        std::fill_n(all, count, 0.0F);
        for (const CpuPaint& piece : piecesOf(mask)) {
            const PixelRect common = piece.shown() & run;
            if (common.isEmpty()) continue;
            piece.row(common.x0, y, common.width(), colours);
            for (int i = 0; i < common.width(); ++i)
                one[i] = colours[i].a * piece.opacity();
            compose(all + (common.x0 - x), one, common.width());
        }
        multiply(alphas, all, count);
    }
}

}  // namespace platform
