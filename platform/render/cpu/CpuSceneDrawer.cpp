// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuSceneDrawer.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>
#include <utility>
#include <vector>

#include "platform/render/cpu/scene/FloorLight.h"
#include "platform/render/cpu/scene/SceneGlow.h"
#include "platform/render/cpu/scene/ScenePlan.h"
#include "platform/render/cpu/scene/StretchPicture.h"
#include "platform/render/cpu/scene/TileHistory.h"
#include "platform/render/cpu/scene/TilePacking.h"
#include "platform/render/cpu/scene/TilePainter.h"
#include "platform/render/cpu/scene/TileWorkers.h"
#include "platform/scene/DrawList.h"
#include "platform/scene/Shading.h"

namespace platform {

namespace {

constexpr std::uint32_t kOpaqueBlack = 0xFF000000U;
// The longest side: beyond it, single precision is too coarse for places within a pixel.
constexpr int kMostSide = 1 << 20;

bool isFinite(const glm::mat4& matrix) {
    for (int column = 0; column < 4; ++column)
        for (int row = 0; row < 4; ++row)
            if (!std::isfinite(matrix[column][row])) return false;
    return true;
}

bool isDrawable(const DrawList& list, double scale) {
    const DrawCamera& camera = list.camera;
    return isFinite(camera.view) && isFinite(camera.projection) &&
           std::abs(camera.projection[0][0]) > 1e-6F && std::abs(camera.projection[1][1]) > 1e-6F &&
           camera.zFar > camera.zNear && scale > 0.0 && std::isfinite(scale);
}

}  // namespace

struct CpuSceneDrawer::Parts {
    explicit Parts(const Options& options)
        : workers(options.threads),
          plan(std::max(1, options.keepDraws), workers),
          benches(static_cast<std::size_t>(workers.threads())) {}

    // Space of one thread to work in.
    struct Bench {
        TilePainter painter;
        std::vector<float> glow = std::vector<float>(SceneGlow::kWorkSize);
        PictureStretch::Desk stretch;
    };

    // All that a tile's light depends on besides its shapes and their lens.
    struct Setting {
        glm::vec4 background{0.0F};
        float threshold = 0.0F;
        bool blooms = false;
        bool operator==(const Setting&) const = default;
    };

    void fit(QSize picture);
    void findWanted(const DrawList& list, bool isBlack);
    void paint(const DrawList& list);
    void paintTile(const DrawList& list, int tile, TilePainter& painter);
    [[nodiscard]] QRect rectOf(int tile) const;
    void show(const PixelBuffer& picture, TileHistory::Memory& memory);
    void showTile(int tile, const PixelBuffer& picture, std::vector<float>& work);
    void add(int tile, std::vector<QRect>& rects) const;
    void drawFrame(const DrawList& list, const PixelBuffer& picture, const Frame& frame);
    void draw(const DrawList& list, const PixelBuffer& picture, double scale, bool isKept);
    void drawCoarse(const DrawList& list, const PixelBuffer& picture, const Frame& frame);
    void findStale(TileHistory::Memory& memory);
    void stretchStale(const PixelBuffer& from, const PixelBuffer& picture);

    TileWorkers workers;
    ScenePlan plan;
    std::vector<Bench> benches;  // by the thread
    SceneGlow glow;
    FloorLight floor;
    QSize size;
    QSize tiles;
    TileHistory history;
    std::vector<char> rests;   // whether floors alone lit the tile, none of it bright
    std::vector<char> isSame;  // whether a resting tile's packed light holds still
    std::vector<char> lit;     // the colours of the tile's packed light
    std::vector<int> wanted;   // tiles to be worked on
    Setting setting;           // of the last draw
    PackedLight packed;
    std::vector<QRect> damage;  // the difference from the last draw
    std::vector<QRect> stale;   // where a stretched picture is to be written
    Counts counts;
    // A picture that is to be stretched, and what it was last stretched to; empty
    // where the last draw was not stretched.
    std::vector<std::uint32_t> coarse;
    QSize stretchedTo;
    PictureStretch stretch;
};

void CpuSceneDrawer::Parts::fit(QSize picture) {
    const bool same = std::exchange(size, picture) == picture;
    tiles = {(size.width() + kTileWidth - 1) / kTileWidth,
             (size.height() + kTileHeight - 1) / kTileHeight};
    const auto count =
        static_cast<std::size_t>(tiles.width()) * static_cast<std::size_t>(tiles.height());
    history.begin(count, same);
    if (!same)
        for (auto* const flags : {&rests, &isSame, &lit})
            flags->assign(count, 0);
    packed.fit(count);
    wanted.reserve(count);
    damage.clear();
    counts = {.tiles = static_cast<int>(count)};
}

QRect CpuSceneDrawer::Parts::rectOf(int tile) const {
    const QRect whole(tile % tiles.width() * kTileWidth, tile / tiles.width() * kTileHeight,
                      kTileWidth, kTileHeight);
    return whole & QRect(QPoint(0, 0), size);
}

// Finds the tiles to be painted. A tile that floors alone light keeps its light while they and
// the setting stay the same.
void CpuSceneDrawer::Parts::findWanted(const DrawList& list, bool isBlack) {
    const Setting now{list.background, list.camera.bloomThreshold, glow.isOn()};
    const bool isStill = std::exchange(setting, now) == now && plan.hasSameFloors();
    const unsigned colours = plan.floors().empty() ? 0U : plan.floors().back().colours;
    floor.begin(lit.size(), colours, plan.hasSameFloors());
    const bool keepsFloor = plan.hasSameFloors() && colours != 0;
    const auto isFloor = [](ShapeCall call) { return call.kind() == ShapeKind::Floor; };
    wanted.clear();
    for (int tile = 0; tile < plan.bins().count(); ++tile) {
        const auto at = static_cast<std::size_t>(tile);
        const std::span<const ShapeCall> calls = plan.bins().of(tile);
        const bool isResting = std::all_of(calls.begin(), calls.end(), isFloor);
        const bool rested = std::exchange(rests[at], static_cast<char>(isResting)) != 0;
        isSame[at] = static_cast<char>(isStill && isResting && rested);
        if (isSame[at]) continue;
        lit[at] = 0;
        if (calls.empty() && isBlack) continue;
        wanted.push_back(tile);
        if (keepsFloor && !isResting && std::any_of(calls.begin(), calls.end(), isFloor))
            floor.want(tile);
    }
}

void CpuSceneDrawer::Parts::paint(const DrawList& list) {
    const glm::vec3 background = glm::vec3(list.background) * list.background.a;
    findWanted(list, !(background.r > 0.0F || background.g > 0.0F || background.b > 0.0F));
    if (wanted.size() > lit.size() * 3 / 4) packed.expectMost();
    for (Bench& bench : benches)
        bench.painter.prepare(plan);
    workers.each(static_cast<int>(wanted.size()), [&](int i, int thread) {
        paintTile(list, wanted[static_cast<std::size_t>(i)],
                  benches[static_cast<std::size_t>(thread)].painter);
    });
    counts.drawn = static_cast<int>(wanted.size());
}

void CpuSceneDrawer::Parts::paintTile(const DrawList& list, int tile, TilePainter& painter) {
    const auto at = static_cast<std::size_t>(tile);
    painter.paint(
        plan, plan.bins().of(tile),
        {.rect = rectOf(tile),
         .background = glm::vec3(list.background) * list.background.a,
         .threshold = glow.isOn() ? std::optional(list.camera.bloomThreshold) : std::nullopt,
         .floor = floor.of(tile)});
    BrightCells cells;
    if (glow.isOn()) cells = glow.cellsOf(tile % tiles.width(), tile / tiles.width());
    const PackedColours result =
        packTile(painter.tile(), glow.isOn() ? &cells : nullptr,
                 {packed.plane(0, at), packed.plane(1, at), packed.plane(2, at)});
    lit[at] = static_cast<char>(result.lit);
    if (result.bright == 0) return;
    glow.setBright(tile, result.bright);
    rests[at] = 0;
}

void CpuSceneDrawer::Parts::add(int tile, std::vector<QRect>& rects) const {
    const QRect rect = rectOf(tile);
    // Neighbours along a row become one rectangle.
    if (!rects.empty() && rects.back().top() == rect.top() &&
        rects.back().right() + 1 == rect.left()) {
        rects.back().setRight(rect.right());
        return;
    }
    rects.push_back(rect);
}

void CpuSceneDrawer::Parts::show(const PixelBuffer& picture, TileHistory::Memory& memory) {
    wanted.clear();
    for (int tile = 0; tile < counts.tiles; ++tile) {
        const auto at = static_cast<std::size_t>(tile);
        const bool glows = glow.glows(tile);
        const bool differs = history.take(
            tile, {.isLit = glows || lit[at], .glows = glows, .isSame = isSame[at] != 0});
        if (differs || memory.drawn == 0) add(tile, damage);
        if (!history.isStale(tile, memory)) continue;
        ++(history.shines(tile) ? counts.encoded : counts.blackened);
        wanted.push_back(tile);
    }
    history.setDrawn(memory);
    workers.each(static_cast<int>(wanted.size()), [&](int i, int thread) {
        showTile(wanted[static_cast<std::size_t>(i)], picture,
                 benches[static_cast<std::size_t>(thread)].glow);
    });
}

void CpuSceneDrawer::Parts::showTile(int tile, const PixelBuffer& picture,
                                     std::vector<float>& work) {
    const auto at = static_cast<std::size_t>(tile);
    const QRect rect = rectOf(tile);
    std::uint32_t* const to =
        picture.pixels + static_cast<std::ptrdiff_t>(rect.top()) * picture.stride + rect.left();
    if (!history.shines(tile)) {
        for (int y = 0; y < rect.height(); ++y)
            std::fill_n(to + static_cast<std::ptrdiff_t>(y) * picture.stride, rect.width(),
                        kOpaqueBlack);
        return;
    }
    std::array<const std::uint16_t*, 3> light{};
    for (std::size_t k = 0; k < 3; ++k)
        if ((static_cast<unsigned>(lit[at]) >> k & 1U) != 0) light[k] = packed.plane(k, at);
    TileGlow added;
    if (glow.glows(tile)) glow.expand(tile, work.data(), added);
    encodeTile(light, added, {to, picture.stride, rect.width(), rect.height()});
}

CpuSceneDrawer::CpuSceneDrawer(const Options& options)
    : options_(options), parts_(std::make_unique<Parts>(options)) {}
CpuSceneDrawer::~CpuSceneDrawer() = default;

void CpuSceneDrawer::Parts::draw(const DrawList& list, const PixelBuffer& picture, double scale,
                                 bool isKept) {
    fit(picture.size);
    TileHistory::Memory& memory = history.memoryOf(picture.pixels, isKept);
    const bool drawable = isDrawable(list, scale);
    const DrawCamera& camera = list.camera;
    const double sigma = bloomSigma(camera.bloomBlurRadius, scale);
    const bool glows = drawable && camera.bloomIntensity > 0.0F &&
                       std::isfinite(camera.bloomIntensity) && sigma > 0.0 &&
                       camera.bloomThreshold >= 0.0F;
    glow.begin({.picture = picture.size,
                .tiles = tiles,
                .intensity = glows ? camera.bloomIntensity : 0.0F,
                .threshold = camera.bloomThreshold,
                .sigma = sigma});
    if (drawable) {
        plan.make(list, picture.size, scale);
        paint(list);
    } else {
        for (auto* const flags : {&rests, &isSame, &lit})
            std::fill(flags->begin(), flags->end(), char{0});
    }
    glow.spread(workers);
    counts.glowing = glow.tilesSpread();
    show(picture, memory);
}

void CpuSceneDrawer::Parts::drawCoarse(const DrawList& list, const PixelBuffer& picture,
                                       const Frame& frame) {
    const QSize whole = picture.size;
    const double share = std::max(frame.resolution, 0.05);
    const QSize inner(std::max(1, static_cast<int>(std::lround(whole.width() * share))),
                      std::max(1, static_cast<int>(std::lround(whole.height() * share))));
    coarse.resize(static_cast<std::size_t>(inner.width()) *
                  static_cast<std::size_t>(inner.height()));
    const PixelBuffer from{coarse.data(), inner.width(), inner};
    const bool continues = stretchedTo == whole && size == inner;
    draw(list, from, frame.scale * inner.height() / whole.height(), continues);
    stretchedTo = whole;
    stretch.fit(inner, whole);
    for (Bench& bench : benches)
        stretch.fit(bench.stretch);
    TileHistory::Memory& memory = history.memoryOf(picture.pixels, frame.isKept && continues);
    const bool isKnown = memory.drawn != 0;
    findStale(memory);
    if (isKnown) {
        for (std::vector<QRect>* const rects : {&damage, &stale})
            for (QRect& rect : *rects)
                rect = stretch.reachOf(rect);
    } else {
        damage.assign(1, QRect(QPoint(0, 0), whole));
        stale = damage;
    }
    stretchStale(from, picture);
}

void CpuSceneDrawer::Parts::drawFrame(const DrawList& list, const PixelBuffer& picture,
                                      const Frame& frame) {
    if (frame.resolution < 1.0) return drawCoarse(list, picture, frame);
    const bool wasCoarse = !std::exchange(stretchedTo, QSize()).isEmpty();
    draw(list, picture, frame.scale, frame.isKept && !wasCoarse);
}

// Finds the coarse picture's tiles that a stretched picture does not show as they are.
void CpuSceneDrawer::Parts::findStale(TileHistory::Memory& memory) {
    stale.clear();
    for (int tile = 0; tile < counts.tiles; ++tile) {
        if (history.isStale(tile, memory)) add(tile, stale);
    }
    history.setDrawn(memory);
}

void CpuSceneDrawer::Parts::stretchStale(const PixelBuffer& from, const PixelBuffer& picture) {
    // The places that tiles reach overlap, so that a piece is rows of the whole picture: each
    // pixel is one thread's.
    constexpr int kBand = 8;  // rows
    const int bands = (picture.size.height() + kBand - 1) / kBand;
    workers.each(bands, [&](int band, int thread) {
        const QRect rows(0, band * kBand, picture.size.width(), kBand);
        for (const QRect& rect : stale)
            if (const QRect part = rect & rows; !part.isEmpty())
                stretch.fill(from, picture, part,
                             benches[static_cast<std::size_t>(thread)].stretch);
    });
}

std::span<const QRect> CpuSceneDrawer::draw(const DrawList& list, const PixelBuffer& picture,
                                            const Frame& frame) {
    const QSize size = picture.size;
    if (size.isEmpty() || std::max(size.width(), size.height()) > kMostSide) return {};
    if (!parts_) parts_ = std::make_unique<Parts>(options_);
    try {
        parts_->drawFrame(list, picture, frame);
    } catch (...) {
        // Nothing is known any more of what fits the picture's size.
        parts_.reset();
        throw;
    }
    return parts_->damage;
}

QImage CpuSceneDrawer::picture(const DrawList& list, QSizeF points, double scale) {
    const QSize size(static_cast<int>(std::lround(points.width() * scale)),
                     static_cast<int>(std::lround(points.height() * scale)));
    if (size.isEmpty() || std::max(size.width(), size.height()) > kMostSide) return {};
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return {};
    draw(list,
         {reinterpret_cast<std::uint32_t*>(image.bits()),
          static_cast<int>(image.bytesPerLine() / 4), size},
         {.scale = scale});
    return image;
}

const CpuSceneDrawer::Counts& CpuSceneDrawer::counts() const {
    static constexpr Counts kNone;
    return parts_ ? parts_->counts : kNone;
}

int CpuSceneDrawer::meshCount() const {
    return parts_ ? parts_->plan.meshCount() : 0;
}

int CpuSceneDrawer::pictureCount() const {
    return parts_ ? parts_->plan.pictureCount() : 0;
}

}  // namespace platform
