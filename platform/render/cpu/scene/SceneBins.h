// SPDX-License-Identifier: MIT
// The tiles of a picture that each shape touches; private to platform/render.
#pragma once

#include <QSize>
#include <cstdint>
#include <glm/vec2.hpp>
#include <optional>
#include <span>
#include <vector>

#include "platform/render/cpu/scene/SceneTile.h"
#include "platform/render/cpu/scene/ScreenShapes.h"

namespace platform {

// A shape by its kind and its number among its kind.
struct ShapeCall {
    std::uint32_t word = 0;

    ShapeCall() = default;
    ShapeCall(ShapeKind kind, std::size_t index)
        : word(static_cast<std::uint32_t>(kind) << 28U | static_cast<std::uint32_t>(index)) {}
    [[nodiscard]] ShapeKind kind() const { return static_cast<ShapeKind>(word >> 28U); }
    [[nodiscard]] std::uint32_t index() const { return word & 0x0FFFFFFFU; }
};

// The calls of every tile, in the order in which they were added.
class SceneBins {
  public:
    void begin(QSize picture);
    // Adds the call to every tile that a box of pixels touches; the box may lie outside.
    void add(ShapeCall call, glm::vec2 low, glm::vec2 high) {
        if (const std::optional<std::uint32_t> tile = onlyTile(low, high)) {
            pairs_.push_back({*tile, call});
        } else {
            addWhere(call, low, high, [](int, int) { return true; });
        }
    }
    // The same, for wanted tiles only.
    template <typename Wanted>
    void addWhere(ShapeCall call, glm::vec2 low, glm::vec2 high, const Wanted& wanted) {
        const Range range = rangeOf(low, high);
        for (int y = range.firstY; y <= range.lastY; ++y)
            for (int x = range.firstX; x <= range.lastX; ++x)
                if (wanted(x, y)) put(call, y * tiles_.width() + x);
    }
    // Adds the call to every tile that the polygon touches.
    void add(ShapeCall call, const ScreenPolygon& polygon);
    void addEverywhere(ShapeCall call);
    void end();

    [[nodiscard]] QSize tiles() const { return tiles_; }
    [[nodiscard]] int count() const { return tiles_.width() * tiles_.height(); }
    [[nodiscard]] std::span<const ShapeCall> of(int tile) const;

  private:
    struct Range {
        int firstX = 0, firstY = 0, lastX = -1, lastY = -1;
    };
    [[nodiscard]] Range rangeOf(glm::vec2 low, glm::vec2 high) const;
    // The tile that holds the whole box, if there is one, as of most small shapes.
    [[nodiscard]] std::optional<std::uint32_t> onlyTile(glm::vec2 low, glm::vec2 high) const {
        // The comparisons are false for a NaN too.
        if (!(low.x >= 0.0F && low.y >= 0.0F && high.x >= low.x && high.y >= low.y &&
              high.x < right_ && high.y < bottom_))
            return std::nullopt;
        const auto column = static_cast<std::uint32_t>(low.x) / kTileWidth;
        const auto row = static_cast<std::uint32_t>(low.y) / kTileHeight;
        if (static_cast<std::uint32_t>(high.x) / kTileWidth != column ||
            static_cast<std::uint32_t>(high.y) / kTileHeight != row)
            return std::nullopt;
        return row * static_cast<std::uint32_t>(tiles_.width()) + column;
    }
    void put(ShapeCall call, int tile) {
        pairs_.push_back({static_cast<std::uint32_t>(tile), call});
    }

    struct Pair {
        std::uint32_t tile = 0;
        ShapeCall call;
    };
    QSize tiles_;
    float right_ = 0.0F;  // of the last tile, in pixels
    float bottom_ = 0.0F;
    std::vector<Pair> pairs_;
    std::vector<std::uint32_t> first_;  // by the tile, and one more
    std::vector<ShapeCall> calls_;
};

}  // namespace platform
