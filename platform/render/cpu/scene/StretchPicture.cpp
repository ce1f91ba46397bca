// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/StretchPicture.h"

#include <algorithm>
#include <utility>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/StretchPicture.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;
using Pixels = hn::CappedTag<std::uint32_t, 16>;
using Places = hn::RebindToSigned<Pixels>;

// Every component mixed by a share in 256ths, two components at a time.
template <typename V>
V mixed(V a, V b, V share) {
    const Pixels d;
    const auto odd = hn::Set(d, 0x00FF00FFU);
    const auto left = hn::Sub(hn::Set(d, 256U), share);
    const auto both = [&](V one, V other) {
        return hn::Add(hn::Mul(hn::And(one, odd), left), hn::Mul(hn::And(other, odd), share));
    };
    const auto low = hn::And(hn::ShiftRight<8>(both(a, b)), odd);
    const auto high = hn::AndNot(odd, both(hn::ShiftRight<8>(a), hn::ShiftRight<8>(b)));
    return hn::Or(low, high);
}

// The arrays may be read and written up to a vector further.
void mixColumns(const std::uint32_t* from, const std::int32_t* first, const std::int32_t* second,
                const std::uint32_t* share, std::uint32_t* to, int count) {
    const Pixels d;
    const Places di;
    const auto* const texels = reinterpret_cast<const std::int32_t*>(from);
    for (int x = 0; x < count; x += static_cast<int>(hn::Lanes(d))) {
        const auto a = hn::BitCast(d, hn::GatherIndex(di, texels, hn::LoadU(di, first + x)));
        const auto b = hn::BitCast(d, hn::GatherIndex(di, texels, hn::LoadU(di, second + x)));
        hn::StoreU(mixed(a, b, hn::LoadU(d, share + x)), d, to + x);
    }
}

void mixRows(const std::uint32_t* above, const std::uint32_t* below, std::uint32_t share,
             std::uint32_t* to, int count) {
    const Pixels d;
    const auto shares = hn::Set(d, share);
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int x = 0; x < count; x += lanes) {
        const auto pixels = mixed(hn::LoadU(d, above + x), hn::LoadU(d, below + x), shares);
        if (x + lanes <= count) {
            hn::StoreU(pixels, d, to + x);
        } else {
            std::array<std::uint32_t, HWY_MAX_BYTES / 4> last{};
            hn::StoreU(pixels, d, last.data());
            std::copy_n(last.data(), count - x, to + x);
        }
    }
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(mixColumns);
HWY_EXPORT(mixRows);

namespace {

// A vector more than a row has.
constexpr std::size_t kBeyond = 16;

}  // namespace

PictureStretch::Between PictureStretch::betweenAt(int i, int from, int to) {
    const std::int64_t at =
        std::max<std::int64_t>((2 * std::int64_t{i} + 1) * from * 128 / to - 128, 0);
    const int first = std::min(static_cast<int>(at >> 8), from - 1);
    return {first, std::min(first + 1, from - 1), static_cast<std::uint32_t>(at & 255)};
}

void PictureStretch::fit(QSize from, QSize to) {
    if (from == from_ && to == to_) return;
    from_ = from;
    to_ = to;
    const std::size_t count = static_cast<std::size_t>(to.width()) + kBeyond;
    first_.assign(count, 0);
    second_.assign(count, 0);
    share_.assign(count, 0U);
    for (int x = 0; x < to.width(); ++x) {
        const Between columns = betweenAt(x, from.width(), to.width());
        const auto at = static_cast<std::size_t>(x);
        first_[at] = columns.first;
        second_[at] = columns.second;
        share_[at] = columns.share;
    }
}

void PictureStretch::fit(Desk& desk) const {
    for (auto& row : desk.row)
        if (row.size() < share_.size() + kBeyond) row.resize(share_.size() + kBeyond);
}

QRect PictureStretch::reachOf(const QRect& rect) const {
    const auto low = [](int at, int from, int to) {
        return static_cast<int>(std::int64_t{at - 1} * to / from) - 2;
    };
    const auto high = [](int at, int from, int to) {
        return static_cast<int>(std::int64_t{at + 2} * to / from) + 2;
    };
    const QRect reach(QPoint(low(rect.left(), from_.width(), to_.width()),
                             low(rect.top(), from_.height(), to_.height())),
                      QPoint(high(rect.right(), from_.width(), to_.width()),
                             high(rect.bottom(), from_.height(), to_.height())));
    return reach & QRect(QPoint(0, 0), to_);
}

void PictureStretch::fill(const PixelBuffer& from, const PixelBuffer& to, const QRect& rect,
                          Desk& desk) const {
    const auto column = static_cast<std::size_t>(rect.left());
    desk.holds = {-1, -1};
    // Two rows that follow one another have two places.
    const auto rowOf = [&](int row) {
        const auto place = static_cast<std::size_t>(row % 2);
        std::uint32_t* const line = desk.row[place].data();
        if (std::exchange(desk.holds[place], row) != row) HWY_DYNAMIC_DISPATCH(mixColumns)
        (from.pixels + static_cast<std::ptrdiff_t>(row) * from.stride, first_.data() + column,
         second_.data() + column, share_.data() + column, line, rect.width());
        return line;
    };
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        const Between rows = betweenAt(y, from_.height(), to_.height());
        const std::uint32_t* const above = rowOf(rows.first);
        const std::uint32_t* const below = rowOf(rows.second);
        HWY_DYNAMIC_DISPATCH(mixRows)
        (above, below, rows.share,
         to.pixels + static_cast<std::ptrdiff_t>(y) * to.stride + rect.left(), rect.width());
    }
}

}  // namespace platform
#endif
