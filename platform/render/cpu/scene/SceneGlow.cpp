// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/SceneGlow.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace platform {

namespace {

// Light of which not one pixel in thirty is a step brighter, once encoded.
constexpr float kFaint = 1e-5F;
// Cells beside a tile that have a share in its pixels.
constexpr int kBeside = 2;

std::size_t countOf(QSize size) {
    const auto side = [](int length) { return static_cast<std::size_t>(std::max(length, 0)); };
    return side(size.width()) * side(size.height());
}

// The four weights of a cubic B-spline, between the second and the third.
std::array<float, 4> splineWeights(double f) {
    const double g = 1.0 - f;
    return {static_cast<float>(g * g * g / 6.0),
            static_cast<float>((4.0 - 6.0 * f * f + 3.0 * f * f * f) / 6.0),
            static_cast<float>((4.0 - 6.0 * g * g + 3.0 * g * g * g) / 6.0),
            static_cast<float>(f * f * f / 6.0)};
}

// The colours that some tile has.
unsigned allOf(const std::vector<char>& flags) {
    unsigned colours = 0;
    for (const char flag : flags)
        colours |= static_cast<unsigned>(flag);
    return colours;
}

}  // namespace

void SceneGlow::Plane::fit(std::size_t count) {
    first_.reset();
    first_.reset(static_cast<float*>(std::calloc(count, sizeof(float))));
    if (!first_) throw std::bad_alloc();
}

void SceneGlow::begin(const Options& options) {
    options_ = options;
    if (!isOn()) {
        if (planned_.tiles != options.tiles) planned_ = {};
        seen_.assign(countOf(options.tiles), 0);
        return;
    }
    if (planned_.tiles != options.tiles || planned_.sigma != options.sigma) fit();
    for (std::size_t tile = 0; tile < bright_.size(); ++tile) {
        if (!bright_[tile]) continue;
        clearCells(cells_, static_cast<int>(tile), static_cast<unsigned>(bright_[tile]));
        bright_[tile] = 0;
    }
}

void SceneGlow::fit() {
    // The plan holds once all memory for it is there.
    planned_ = {};
    const QSize tiles = options_.tiles;
    plan_ = planBloom({.size = {tiles.width() * kTileWidth, tiles.height() * kTileHeight},
                       .sigma = std::min(options_.sigma, 170.0),
                       .spline = true});
    reduction_ = plan_.reduction();
    cellsAcross_ = kTileWidth / reduction_;
    cellsDown_ = kTileHeight / reduction_;
    margin_ = plan_.radius + 20;
    stride_ = tiles.width() * cellsAcross_ + 2 * margin_;
    const auto rows = static_cast<std::size_t>(tiles.height() * cellsDown_ + 2 * margin_);
    for (Planes* const planes : {&cells_, &blurred_, &spread_})
        for (auto& plane : *planes)
            plane.fit(rows * static_cast<std::size_t>(stride_));
    for (Flags* const flags : {&bright_, &along_, &glow_, &seen_})
        flags->assign(countOf(tiles), 0);
    phases_.clear();
    for (int i = 0; i < reduction_; ++i) {
        const double at = (i + 0.5) / reduction_ - 0.5;
        const double base = std::floor(at);
        phases_.push_back({static_cast<int>(base) - 1, splineWeights(at - base)});
    }
    planned_ = options_;
}

std::size_t SceneGlow::cellAt(int tileX, int tileY) const {
    return static_cast<std::size_t>((margin_ + tileY * cellsDown_) * stride_ + margin_ +
                                    tileX * cellsAcross_);
}

BrightCells SceneGlow::cellsOf(int tileX, int tileY) {
    BrightCells cells{.stride = stride_, .reduction = reduction_, .threshold = options_.threshold};
    for (std::size_t k = 0; k < 3; ++k)
        cells.plane[k] = cells_[k].data() + cellAt(tileX, tileY);
    return cells;
}

void SceneGlow::clearCells(Planes& planes, int tile, unsigned colours) {
    const int across = options_.tiles.width();
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(colours, k)) continue;
        float* const first = planes[k].data() + cellAt(tile % across, tile / across);
        for (int row = 0; row < cellsDown_; ++row)
            std::fill_n(first + static_cast<std::ptrdiff_t>(row) * stride_, cellsAcross_, 0.0F);
    }
}

unsigned SceneGlow::coloursNear(const Flags& flags, int tile, int across, int down) const {
    const int width = options_.tiles.width();
    const int x = tile % width;
    const int y = tile / width;
    unsigned colours = 0;
    for (int row = std::max(0, y - down); row <= std::min(options_.tiles.height() - 1, y + down);
         ++row)
        for (int column = std::max(0, x - across); column <= std::min(width - 1, x + across);
             ++column)
            colours |= static_cast<unsigned>(flags[static_cast<std::size_t>(row * width + column)]);
    return colours;
}

// Computes the tiles that light of the given tiles reaches, and clears the tiles that light
// no longer reaches.
template <typename Work>
void SceneGlow::pass(TileWorkers& workers, const Flags& from, Flags& to, Planes& planes, int across,
                     int down, Work work) {
    workers.each(
        static_cast<int>(to.size()),
        [&](int tile, int) {
            const unsigned reached = coloursNear(from, tile, across, down);
            char& was = to[static_cast<std::size_t>(tile)];
            const std::size_t first =
                cellAt(tile % options_.tiles.width(), tile / options_.tiles.width());
            for (std::size_t k = 0; k < 3; ++k)
                if (holds(reached, k)) work(k, first);
            clearCells(planes, tile, static_cast<unsigned>(was) & ~reached);
            was = static_cast<char>(reached);
        },
        TileWorkers::kFewestSmallPieces);
}

// The first and the last cell of each row go on to both sides.
void SceneGlow::repeatSides(Planes& planes, unsigned colours, int reach) const {
    const int across = (options_.picture.width() + reduction_ - 1) / reduction_;
    const int down = (options_.picture.height() + reduction_ - 1) / reduction_;
    for (std::size_t k = 0; k < 3; ++k)
        for (int row = 0; holds(colours, k) && row < down; ++row) {
            float* const first = planes[k].data() + (margin_ + row) * stride_ + margin_;
            std::fill_n(first - reach, reach, first[0]);
            std::fill_n(first + across, reach, first[across - 1]);
        }
}

// The first and the last row of cells go on above and below.
void SceneGlow::repeatEnds(Planes& planes, unsigned colours, int reach) const {
    const int down = (options_.picture.height() + reduction_ - 1) / reduction_;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(colours, k)) continue;
        float* const first = planes[k].data() + margin_ * stride_;
        float* const last = first + (down - 1) * stride_;
        for (int row = 1; row <= reach; ++row) {
            std::copy_n(first, stride_, first - row * stride_);
            std::copy_n(last, stride_, last + row * stride_);
        }
    }
}

void SceneGlow::spread(TileWorkers& workers) {
    tilesSpread_ = 0;
    if (!isOn()) return;
    repeatSides(cells_, allOf(bright_), plan_.radius);
    const int reach = plan_.radius + kBeside;
    const float* const weight = plan_.weight.data();
    pass(workers, bright_, along_, blurred_, (reach + cellsAcross_ - 1) / cellsAcross_, 0,
         [&](std::size_t k, std::size_t at) {
             blurCells({cells_[k].data() + at, stride_, cellsAcross_, cellsDown_}, 1,
                       {weight, plan_.radius, options_.intensity}, blurred_[k].data() + at);
         });
    repeatEnds(blurred_, allOf(along_), plan_.radius);
    pass(workers, along_, glow_, spread_, 0, (reach + cellsDown_ - 1) / cellsDown_,
         [&](std::size_t k, std::size_t at) {
             blurCells({blurred_[k].data() + at, stride_, cellsAcross_, cellsDown_}, stride_,
                       {weight, plan_.radius, 1.0F}, spread_[k].data() + at);
         });
    const unsigned colours = allOf(glow_);
    repeatSides(spread_, colours, kBeside);
    repeatEnds(spread_, colours, kBeside);
    tilesSpread_ = static_cast<int>(glow_.size()) -
                   static_cast<int>(std::count(glow_.begin(), glow_.end(), char{0}));
    workers.each(
        static_cast<int>(seen_.size()),
        [&](int tile, int) {
            const auto at = static_cast<std::size_t>(tile);
            seen_[at] = glow_[at] ? coloursSeen(tile) : char{0};
        },
        TileWorkers::kFewestSmallPieces);
}

char SceneGlow::coloursSeen(int tile) const {
    const std::size_t first = cellAt(tile % options_.tiles.width(), tile / options_.tiles.width()) -
                              static_cast<std::size_t>(kBeside * stride_ + kBeside);
    unsigned seen = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        if (!holds(static_cast<unsigned>(glow_[static_cast<std::size_t>(tile)]), k)) continue;
        const float most = mostOf({spread_[k].data() + first, stride_, cellsAcross_ + 2 * kBeside,
                                   cellsDown_ + 2 * kBeside});
        if (most >= kFaint) seen |= 1U << k;
    }
    return static_cast<char>(seen);
}

// Stretches along the rows first, into rows as far apart as the cells, and then between those
// rows.
void SceneGlow::expand(int tile, float* work, TileGlow& glow) const {
    float* const along = work + 3 * kPackedTile;
    const std::size_t first = cellAt(tile % options_.tiles.width(), tile / options_.tiles.width());
    for (std::size_t k = 0; k < 3; ++k) {
        glow.plane[k] = nullptr;
        if (!holds(static_cast<unsigned>(seen_[static_cast<std::size_t>(tile)]), k)) continue;
        const float* const cells = spread_[k].data() + first;
        for (int row = 0; row < cellsDown_ + 2 * kBeside; ++row)
            stretchCells(cells + static_cast<std::ptrdiff_t>(row - kBeside) * stride_, phases_,
                         along + static_cast<std::ptrdiff_t>(row) * kTileWidth, cellsAcross_);
        float* const to = work + k * kPackedTile;
        for (int row = 0; row < kTileHeight; ++row) {
            const GlowPhase& p = phases_[static_cast<std::size_t>(row % reduction_)];
            const float* const from =
                along +
                static_cast<std::ptrdiff_t>(row / reduction_ + kBeside + p.first) * kTileWidth;
            const float* const four[4] = {from, from + kTileWidth, from + 2 * kTileWidth,
                                          from + 3 * kTileWidth};
            weighCells(four, p.weight.data(), to + static_cast<std::ptrdiff_t>(row) * kTileWidth,
                       kTileWidth);
        }
        glow.plane[k] = to;
    }
}

}  // namespace platform
