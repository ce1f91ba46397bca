// SPDX-License-Identifier: MIT
#include "platform/render/gl/GlPictures.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr std::int64_t kTexelBytes = 4;
constexpr std::int64_t kFirstTexels = 1 << 18;

std::int64_t texelsOf(QSize size) {
    return static_cast<std::int64_t>(size.width()) * size.height();
}

QSize half(QSize size) {
    return {std::max(1, size.width() / 2), std::max(1, size.height() / 2)};
}

}  // namespace

GlPictures::GlPictures(int maxTexels, int keepDraws)
    : buffer_("pictures", GL_RGBA8),
      maxTexels_(maxTexels),
      keepDraws_(static_cast<std::uint64_t>(std::max(1, keepDraws))) {
    // A store always exists: a shader that reads no picture still has one bound.
    buffer_.grow(kTexelBytes, 0);
}

GlPictures::Place GlPictures::place(const QImage& image) {
    const auto found = kept_.find(image.cacheKey());
    if (found != kept_.end()) {
        found->second.lastDraw = draw_;
        return found->second.place;
    }
    const Place place = upload(image);
    kept_.emplace(image.cacheKey(), Kept{.place = place, .lastDraw = draw_});
    return place;
}

GlPictures::Place GlPictures::upload(const QImage& image) {
    QSize size = image.size();
    int first = reserve(texelsOf(size));
    while (first < 0 && texelsOf(size) > 1) {
        size = half(size);
        first = reserve(texelsOf(size));
    }
    if (first < 0) return {};
    QImage picture = image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    if (picture.size() != size)
        picture = picture.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const std::int64_t row = size.width() * kTexelBytes;
    if (picture.bytesPerLine() == row) {
        buffer_.write(first * kTexelBytes, row * size.height(), picture.constBits());
    } else {
        for (int y = 0; y < size.height(); ++y)
            buffer_.write(first * kTexelBytes + y * row, row, picture.constScanLine(y));
    }
    return {.first = first, .size = size};
}

int GlPictures::reserve(std::int64_t texels) {
    int first = firstGap(texels);
    if (first < 0) {
        dropUnusedFor(1);
        first = firstGap(texels);
    }
    if (first < 0) return -1;
    const std::int64_t size = buffer_.size() / kTexelBytes;
    if (first + texels > size) {
        const std::int64_t wanted = std::max({first + texels, 2 * size, kFirstTexels});
        buffer_.grow(std::min(wanted, maxTexels_) * kTexelBytes, size * kTexelBytes);
    }
    return first;
}

int GlPictures::firstGap(std::int64_t texels) const {
    std::vector<std::pair<std::int64_t, std::int64_t>> used;
    for (const auto& [key, kept] : kept_)
        used.emplace_back(kept.place.first, kept.place.first + texelsOf(kept.place.size));
    std::sort(used.begin(), used.end());
    std::int64_t from = 0;
    for (const auto& [first, end] : used) {
        if (first - from >= texels) break;
        from = std::max(from, end);
    }
    return from + texels <= maxTexels_ ? static_cast<int>(from) : -1;
}

void GlPictures::endDraw() {
    dropUnusedFor(keepDraws_);
    ++draw_;
}

void GlPictures::dropUnusedFor(std::uint64_t draws) {
    std::erase_if(kept_, [&](const auto& entry) { return draw_ - entry.second.lastDraw >= draws; });
}

}  // namespace platform
