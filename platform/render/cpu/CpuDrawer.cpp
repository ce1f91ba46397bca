// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuDrawer.h"

#include <algorithm>
#include <vector>

#include "platform/render/PixelRect.h"
#include "platform/render/cpu/CpuMask.h"
#include "platform/render/cpu/CpuPaint.h"
#include "platform/render/cpu/PixelRows.h"

namespace platform {

namespace {

constexpr QImage::Format kFormat = QImage::Format_ARGB32_Premultiplied;

// Pictures of other formats, converted once and kept while lists show them.
class ConvertedImages {
  public:
    void begin() {
        for (Entry& entry : entries_)
            entry.used = false;
    }

    const QImage& get(const QImage& image) {
        if (image.isNull() || image.format() == kFormat) return image;
        for (Entry& entry : entries_) {
            if (entry.key != image.cacheKey()) continue;
            entry.used = true;
            return entry.image;
        }
        entries_.push_back({image.cacheKey(), image.convertToFormat(kFormat), true});
        return entries_.back().image;
    }

    void end() {
        std::erase_if(entries_, [](const Entry& entry) { return !entry.used; });
    }

  private:
    struct Entry {
        qint64 key;
        QImage image;
        bool used;
    };
    std::vector<Entry> entries_;
};

}  // namespace

struct CpuDrawer::State {
    void prepare(const DisplayList& list, const PixelGrid& grid);
    CpuPaint place(const DisplayList& list, const DisplayItem& item, const PixelGrid& grid);
    void repaint(const DisplayList& list, const PixelRect& rect,
                 std::optional<std::uint32_t> background);
    void drawItem(const CpuPaint& paint, std::int32_t mask, const PixelRect& region);
    void drawEven(const CpuPaint& paint, const PixelRect& region);
    void drawAny(const CpuPaint& paint, std::int32_t mask, bool even, const PixelRect& region);

    [[nodiscard]] std::uint32_t* row(int x, int y) const {
        return target.pixels + std::ptrdiff_t{target.stride} * y + x;
    }

    PixelBuffer target;
    ConvertedImages converted;
    std::vector<CpuPaint> items;
    std::vector<PixelRect> bounds;    // per item, masks included
    std::vector<std::size_t> hiding;  // the items that hide all items below them
    CpuMasks masks;
    std::vector<float> rowAlphas;    // per row of a region
    std::vector<float> pixelAlphas;  // per pixel of a row
    std::vector<Rgba> colours;       // per pixel of a row
};

CpuPaint CpuDrawer::State::place(const DisplayList& list, const DisplayItem& item,
                                 const PixelGrid& grid) {
    const auto stops = std::span(list.stops).subspan(item.firstStop, item.stopCount);
    return {item, stops, grid, &converted.get(item.image)};
}

void CpuDrawer::State::prepare(const DisplayList& list, const PixelGrid& grid) {
    converted.begin();
    const int longest = std::max(target.size.width(), target.size.height());
    masks.prepare(list, longest);
    rowAlphas.resize(static_cast<std::size_t>(longest));
    pixelAlphas.resize(rowAlphas.size());
    colours.resize(rowAlphas.size());
    for (const DisplayItem& piece : list.pieces)
        masks.addPiece(place(list, piece, grid));
    masks.finish();
    // The room equals the list's own, which stops growing in steady use.
    items.clear();
    items.reserve(list.items.capacity());
    bounds.clear();
    bounds.reserve(list.items.capacity());
    hiding.clear();
    hiding.reserve(list.items.capacity());
    for (const DisplayItem& item : list.items) {
        const CpuPaint& paint = items.emplace_back(place(list, item, grid));
        if (item.mask < 0 && paint.isOpaqueColour()) hiding.push_back(items.size() - 1);
        bounds.push_back(item.mask < 0 ? paint.shown() : paint.shown() & masks.bounds(item.mask));
    }
    converted.end();
}

void CpuDrawer::State::repaint(const DisplayList& list, const PixelRect& rect,
                               std::optional<std::uint32_t> background) {
    std::size_t first = 0;
    const auto covers = [&](std::size_t item) { return bounds[item].contains(rect); };
    const auto hides = std::find_if(hiding.rbegin(), hiding.rend(), covers);
    if (hides != hiding.rend()) {
        first = *hides + 1;
        background = rows::pixel(items[*hides].rowColour(rect.y0));
    }
    for (int y = rect.y0; background && y < rect.y1; ++y)
        rows::fill(row(rect.x0, y), rect.width(), *background);
    for (std::size_t i = first; i < items.size(); ++i) {
        const PixelRect region = bounds[i] & rect;
        if (!region.isEmpty()) drawItem(items[i], list.items[i].mask, region);
    }
}

void CpuDrawer::State::drawItem(const CpuPaint& paint, std::int32_t mask, const PixelRect& region) {
    const bool even = mask < 0 || masks.isEven(mask, region);
    if (even) {
        std::fill_n(rowAlphas.begin(), region.height(), paint.opacity());
        masks.multiplyRows(mask, region, rowAlphas.data());
    }
    if (even && (paint.isPixels() || paint.isEvenAlongRows()))
        drawEven(paint, region);
    else
        drawAny(paint, mask, even, region);
}

// Draws an item with one alpha per row, and with a picture's pixels or one colour.
void CpuDrawer::State::drawEven(const CpuPaint& paint, const PixelRect& region) {
    for (int y = region.y0; y < region.y1; ++y) {
        const float alpha = rowAlphas[static_cast<std::size_t>(y - region.y0)];
        const rows::Share share = rows::share(alpha);
        if (share == 0) continue;
        std::uint32_t* const to = row(region.x0, y);
        if (paint.isPixels()) {
            rows::blend(to, paint.pixels(region.x0, y), region.width(), share);
        } else {
            const Rgba colour = paint.rowColour(y);
            rows::blend(to, region.width(),
                        {colour.r * alpha, colour.g * alpha, colour.b * alpha, colour.a * alpha});
        }
    }
}

void CpuDrawer::State::drawAny(const CpuPaint& paint, std::int32_t mask, bool even,
                               const PixelRect& region) {
    for (int y = region.y0; y < region.y1; ++y) {
        if (even) {
            const float alpha = rowAlphas[static_cast<std::size_t>(y - region.y0)];
            if (alpha == 0.0F) continue;
            std::fill_n(pixelAlphas.begin(), region.width(), alpha);
        } else {
            std::fill_n(pixelAlphas.begin(), region.width(), paint.opacity());
            masks.multiplyPixels(mask, region.x0, y, region.width(), pixelAlphas.data());
        }
        paint.row(region.x0, y, region.width(), colours.data());
        rows::blend(row(region.x0, y), colours.data(), pixelAlphas.data(), region.width());
    }
}

CpuDrawer::CpuDrawer() : state_(std::make_unique<State>()) {}

CpuDrawer::~CpuDrawer() = default;

void CpuDrawer::draw(const DisplayList& list, const PixelGrid& grid, std::span<const QRect> rects,
                     std::optional<Rgba> background, const PixelBuffer& target) {
    const PixelRect picture{0, 0, target.size.width(), target.size.height()};
    const auto pixel = background ? std::optional(rows::pixel(*background)) : std::nullopt;
    state_->target = target;
    state_->prepare(list, grid);
    for (const QRect& rect : rects) {
        const PixelRect inside = PixelRect::from(rect) & picture;
        if (!inside.isEmpty()) state_->repaint(list, inside, pixel);
    }
}

}  // namespace platform
