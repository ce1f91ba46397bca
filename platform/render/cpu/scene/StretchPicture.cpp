// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/StretchPicture.h"

#include <algorithm>

namespace platform {

namespace {

// Two neighbours, and the second one's share in 256ths.
struct Between {
    int first = 0;
    int second = 0;
    std::uint32_t share = 0;
};

Between betweenAt(int i, int from, int to) {
    const std::int64_t at =
        std::max<std::int64_t>((2 * std::int64_t{i} + 1) * from * 128 / to - 128, 0);
    const int first = std::min(static_cast<int>(at >> 8), from - 1);
    return {first, std::min(first + 1, from - 1), static_cast<std::uint32_t>(at & 255)};
}

// Two components at a time.
std::uint32_t mixed(std::uint32_t a, std::uint32_t b, std::uint32_t share) {
    constexpr std::uint32_t kOdd = 0x00FF00FFU;
    const std::uint32_t low = ((a & kOdd) * (256 - share) + (b & kOdd) * share) >> 8U & kOdd;
    const std::uint32_t high =
        ((a >> 8U & kOdd) * (256 - share) + (b >> 8U & kOdd) * share) & ~kOdd;
    return low | high;
}

}  // namespace

void stretchPicture(const PixelBuffer& from, const PixelBuffer& to) {
    for (int y = 0; y < to.size.height(); ++y) {
        const Between rows = betweenAt(y, from.size.height(), to.size.height());
        const auto rowAt = [&](int row) {
            return from.pixels + static_cast<std::ptrdiff_t>(row) * from.stride;
        };
        const std::uint32_t* const above = rowAt(rows.first);
        const std::uint32_t* const below = rowAt(rows.second);
        std::uint32_t* const line = to.pixels + static_cast<std::ptrdiff_t>(y) * to.stride;
        for (int x = 0; x < to.size.width(); ++x) {
            const Between columns = betweenAt(x, from.size.width(), to.size.width());
            const std::uint32_t upper =
                mixed(above[columns.first], above[columns.second], columns.share);
            const std::uint32_t lower =
                mixed(below[columns.first], below[columns.second], columns.share);
            line[x] = mixed(upper, lower, rows.share);
        }
    }
}

}  // namespace platform
