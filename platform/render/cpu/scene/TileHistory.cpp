// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/TileHistory.h"

#include <algorithm>
#include <utility>

namespace platform {

namespace {

// The most pictures whose memory is remembered: a window's buffers, and the coarse picture.
constexpr std::size_t kMostMemories = 5;

}  // namespace

void TileHistory::begin(std::size_t tiles, bool isSameSize) {
    ++number_;
    if (isSameSize) return;
    memories_.clear();
    changed_.assign(tiles, number_);
    shines_.assign(tiles, 1);
    glows_.assign(tiles, 1);
}

TileHistory::Memory& TileHistory::memoryOf(const std::uint32_t* pixels, bool isKept) {
    const auto known = std::find_if(memories_.begin(), memories_.end(),
                                    [&](const Memory& memory) { return memory.pixels == pixels; });
    if (known != memories_.end()) {
        std::rotate(known, known + 1, memories_.end());
    } else {
        if (memories_.size() == kMostMemories) memories_.erase(memories_.begin());
        memories_.emplace_back().pixels = pixels;
    }
    Memory& memory = memories_.back();
    if (!isKept) memory.drawn = 0;
    return memory;
}

bool TileHistory::take(int tile, const Light& light) {
    const auto at = static_cast<std::size_t>(tile);
    const bool shone = std::exchange(shines_[at], static_cast<char>(light.isLit)) != 0;
    const bool glowed = std::exchange(glows_[at], static_cast<char>(light.glows)) != 0;
    if (!light.isLit && !shone) return false;
    if (light.isSame && !light.glows && !glowed) return false;
    changed_[at] = number_;
    return true;
}

}  // namespace platform
