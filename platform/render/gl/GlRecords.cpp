// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlRecords.h"

#include <algorithm>
#include <cmath>

namespace platform {

namespace {

// The names are those of rects.frag.
enum PaintKind : std::int32_t { kColour, kGradient, kExact, kStretched, kSlope };
constexpr std::size_t kPaintRecords = 3;
constexpr std::size_t kPieceRecords = 4;
constexpr std::size_t kRectRecords = 2;
// A position that no gradient reaches, and a slope steep enough to be a step.
constexpr double kFar = 1e9;
// With more pieces than this, cutting costs more than drawing the empty parts.
constexpr std::uint32_t kMostCutPieces = 16;
// The usual greatest number of boxes after cutting.
constexpr std::size_t kMostBoxes = 64;

// The edges of PixelGrid::snap, in OpenGL's coordinates from the lower left;
// extreme values are clamped.
PixelRect snapped(const QRectF& points, const PixelGrid& grid) {
    const auto edge = [&grid](double at) {
        constexpr double kMost = 1 << 24;
        return PixelGrid::edge(std::clamp(at * grid.scale, -kMost, kMost));
    };
    return {edge(points.left()), edge(points.top()), edge(points.right()), edge(points.bottom())};
}

// Adds to the non-overlapping `boxes` the part of `box` that no box from index
// `from` on covers yet; the boxes still do not overlap.
void addUncovered(std::vector<PixelRect>& boxes, std::size_t from, const PixelRect& box) {
    if (box.isEmpty()) return;
    for (std::size_t i = from; i < boxes.size(); ++i) {
        const PixelRect common = boxes[i] & box;
        if (common.isEmpty()) continue;
        addUncovered(boxes, i + 1, {box.x0, common.y1, box.x1, box.y1});
        addUncovered(boxes, i + 1, {box.x0, box.y0, box.x1, common.y0});
        addUncovered(boxes, i + 1, {box.x0, common.y0, common.x0, common.y1});
        addUncovered(boxes, i + 1, {common.x1, common.y0, box.x1, common.y1});
        return;
    }
    boxes.push_back(box);
}

std::int32_t whole(std::size_t value) {
    return static_cast<std::int32_t>(value);
}

}  // namespace

void GlRecords::begin(const DisplayList& list, const PixelGrid& grid) {
    list_ = &list;
    grid_ = grid;
    screen_ = {0, 0, grid.size.width(), grid.size.height()};
    reserve();
    restart();
}

// Reserves room for every layer of the list's trees. The number of visible
// layers varies from frame to frame, and must not cause another allocation.
void GlRecords::reserve() {
    const std::size_t items = list_->items.capacity();
    const std::size_t pieces = list_->pieces.capacity();
    const std::size_t masks = list_->masks.capacity();
    rects_.reserve(items + pieces);
    maskRecords_.reserve(masks);
    boxes_.reserve(kMostBoxes);
    records_.reserve(std::min(limit_, (kPaintRecords + kRectRecords) * items + masks +
                                          (kPieceRecords + kRectRecords) * pieces +
                                          list_->stops.capacity()));
}

void GlRecords::restart() {
    records_.clear();
    rects_.clear();
    wantsEverything_ = false;
    maskRecords_.assign(list_->masks.size(), -1);
}

bool GlRecords::add(const DisplayItem& item) {
    const PixelRect box = snapped(item.rect, grid_) & snapped(item.clip, grid_) & screen_;
    if (box.isEmpty()) return true;
    const std::size_t records = records_.size();
    const std::size_t rects = rects_.size();
    addVisible(item, box);
    if (records_.size() + kRectRecords * rects_.size() <= limit_) return true;
    records_.resize(records);
    rects_.resize(rects);
    for (std::int32_t& at : maskRecords_) {
        if (at >= whole(records)) at = -1;
    }
    return false;
}

void GlRecords::addVisible(const DisplayItem& item, const PixelRect& box) {
    const std::size_t rects = rects_.size();
    addRects(item, box);
    if (rects_.size() == rects) return;
    Paint paint = this->paint(item);
    if (paint.reach.isEmpty()) {
        rects_.resize(rects);
        return;
    }
    if (item.mask >= 0) paint.head[2] = maskRecord(item.mask);
    const std::size_t at = append(kPaintRecords);
    records_[at] = paint.head;
    records_[at + 1] = paint.form;
    records_[at + 2] = paint.extra;
    std::size_t kept = rects;
    for (std::size_t i = rects; i < rects_.size(); ++i) {
        const PixelRect shown = rects_[i].box & paint.reach;
        if (!shown.isEmpty()) rects_[kept++] = {.box = shown, .paint = whole(at)};
    }
    rects_.resize(kept);
}

void GlRecords::addRects(const DisplayItem& item, const PixelRect& box) {
    boxes_.clear();
    if (item.mask < 0) boxes_.push_back(box);
    PixelRect within = box;
    for (std::int32_t mask = item.mask; mask >= 0;) {
        const DisplayMask& m = list_->masks[static_cast<std::size_t>(mask)];
        const bool cut = mask == item.mask && m.pieceCount <= kMostCutPieces;
        PixelRect around;
        for (std::uint32_t i = m.firstPiece; i < m.firstPiece + m.pieceCount; ++i) {
            const DisplayItem& piece = list_->pieces[i];
            const PixelRect shown = snapped(piece.rect, grid_) & snapped(piece.clip, grid_) & box;
            if (cut) addUncovered(boxes_, 0, shown);
            around = around | shown;
        }
        if (mask == item.mask && !cut) boxes_.push_back(around);
        within = within & around;
        mask = m.outer;
    }
    for (const PixelRect& part : boxes_) {
        const PixelRect shown = part & within;
        if (!shown.isEmpty()) rects_.push_back({.box = shown, .paint = 0});
    }
}

std::int32_t GlRecords::maskRecord(std::int32_t mask) {
    const auto index = static_cast<std::size_t>(mask);
    if (maskRecords_[index] >= 0) return maskRecords_[index];
    const DisplayMask& m = list_->masks[index];
    const std::int32_t outer = m.outer < 0 ? -1 : maskRecord(m.outer);
    const std::size_t at = append(1 + kPieceRecords * m.pieceCount);
    records_[at] = {outer, static_cast<std::int32_t>(m.pieceCount), 0, 0};
    for (std::uint32_t i = 0; i < m.pieceCount; ++i) {
        const DisplayItem& piece = list_->pieces[m.firstPiece + i];
        const Paint paint = paintPiece(piece);
        const PixelRect box = paint.reach & snapped(piece.clip, grid_) & screen_;
        Record* const to = &records_[at + 1 + kPieceRecords * i];
        to[0] = {box.x0, box.y0, box.x1, box.y1};
        to[1] = paint.form;
        to[2] = paint.extra;
        to[3] = paint.head;
    }
    maskRecords_[index] = whole(at);
    return whole(at);
}

GlRecords::Paint GlRecords::paint(const DisplayItem& item) {
    const PixelRect rect = snapped(item.rect, grid_);
    if (rect.isEmpty()) return {};
    if (item.kind == DisplayItem::Kind::Image) return paintPicture(item, rect);
    if (item.kind == DisplayItem::Kind::Gradient) return paintGradient(item, rect);
    return {.head = {kColour, bits(item.opacity), -1, 0},
            .form = {bits(item.colour.r), bits(item.colour.g), bits(item.colour.b),
                     bits(item.colour.a)},
            .reach = rect};
}

GlRecords::Record GlRecords::axis(const DisplayItem& item) const {
    const QPointF axis = item.end - item.start;
    const double square = QPointF::dotProduct(axis, axis);
    // Without a length, every position lies before the first stop.
    if (!(square > 0.0)) return {0, 0, bits(-kFar), 0};
    const double alongX = axis.x() / square / item.rect.width();
    const double alongY = axis.y() / square / item.rect.height();
    const double offset = item.rect.left() * alongX + item.rect.top() * alongY +
                          QPointF::dotProduct(item.start, axis) / square;
    return {bits(alongX / grid_.scale), bits(alongY / grid_.scale), bits(-offset), 0};
}

GlRecords::Paint GlRecords::paintGradient(const DisplayItem& item, const PixelRect& rect) {
    if (item.stopCount == 0) return {};
    wantsEverything_ = true;
    const std::size_t first = append(2 * item.stopCount);
    for (std::uint32_t i = 0; i < item.stopCount; ++i) {
        const GradientLayer::Stop& stop = list_->stops[item.firstStop + i];
        records_[first + 2 * i] = {bits(stop.location), 0, 0, 0};
        records_[first + 2 * i + 1] = {bits(stop.colour.r), bits(stop.colour.g),
                                       bits(stop.colour.b), bits(stop.colour.a)};
    }
    return {.head = {kGradient, bits(item.opacity), -1, 0},
            .form = axis(item),
            .extra = {whole(first), static_cast<std::int32_t>(item.stopCount), 0, 0},
            .reach = rect};
}

GlRecords::Paint GlRecords::paintPicture(const DisplayItem& item, const PixelRect& rect) {
    if (item.image.isNull()) return {};
    const QSize own = item.image.size();
    const bool exact = std::abs(own.width() - item.rect.width() * grid_.scale) < 1.0 &&
                       std::abs(own.height() - item.rect.height() * grid_.scale) < 1.0;
    const PixelRect box =
        exact ? PixelRect{rect.x0, rect.y0, rect.x0 + own.width(), rect.y0 + own.height()} : rect;
    const GlPictures::Place place = pictures_.place(item.image);
    if (place.size.isEmpty()) return {};
    Paint paint{.head = {kExact, bits(item.opacity), -1, 0}, .reach = box & rect};
    if (place.size == QSize(box.width(), box.height())) {
        paint.form = {box.x0, box.y1, place.size.width(), place.first};
        return paint;
    }
    wantsEverything_ = true;
    const double alongX = static_cast<double>(place.size.width()) / box.width();
    const double alongY = -static_cast<double>(place.size.height()) / box.height();
    paint.head[0] = kStretched;
    paint.form = {bits(alongX), bits(-0.5 - box.x0 * alongX), bits(alongY),
                  bits(-0.5 - box.y1 * alongY)};
    paint.extra = {place.first, place.size.width(), place.size.height(), 0};
    return paint;
}

GlRecords::Paint GlRecords::paintPiece(const DisplayItem& piece) {
    const PixelRect rect = snapped(piece.rect, grid_);
    if (rect.isEmpty()) return {};
    if (piece.kind == DisplayItem::Kind::Image) {
        wantsEverything_ = true;
        return paintPicture(piece, rect);
    }
    Paint paint{.head = {kSlope, 0, 0, 0}, .reach = rect};
    if (piece.kind == DisplayItem::Kind::Colour) {
        paint.form[3] = bits(piece.colour.a * piece.opacity);
        return paint;
    }
    if (piece.stopCount == 0) return {};
    const GradientLayer::Stop* const stops = &list_->stops[piece.firstStop];
    paint.form = axis(piece);
    paint.form[3] = bits(stops[0].colour.a * piece.opacity);
    const std::uint32_t rises = piece.stopCount - 1;
    const std::size_t first = append(rises);
    for (std::uint32_t i = 0; i < rises; ++i) {
        const float length = stops[i + 1].location - stops[i].location;
        records_[first + i] = {bits(stops[i].location), bits(length > 0.0F ? 1.0 / length : kFar),
                               bits((stops[i + 1].colour.a - stops[i].colour.a) * piece.opacity),
                               0};
    }
    paint.extra = {whole(first), static_cast<std::int32_t>(rises), 0, 0};
    return paint;
}

std::size_t GlRecords::append(std::size_t count) {
    const std::size_t at = records_.size();
    records_.resize(at + count);
    return at;
}

std::size_t GlRecords::finish() {
    const std::size_t first = append(kRectRecords * rects_.size());
    std::size_t at = first;
    for (const Rect& rect : rects_) {
        records_[at++] = {rect.box.x0, rect.box.y0, rect.box.x1, rect.box.y1};
        records_[at++] = {rect.paint, 0, 0, 0};
    }
    return first;
}

}  // namespace platform
