// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/GlowCells.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "platform/render/cpu/scene/GlowCells.cpp"
#include <hwy/foreach_target.h>
// After foreach_target.
#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace platform::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

template <class D>
void blurSome(D d, const float* from, std::ptrdiff_t step, const float* weight, int radius,
              float* to, float scale) {
    auto sum = hn::Mul(hn::LoadU(d, from), hn::Set(d, weight[0]));
    for (int i = 1; i <= radius; ++i) {
        const auto both = hn::Add(hn::LoadU(d, from - i * step), hn::LoadU(d, from + i * step));
        sum = hn::Add(sum, hn::Mul(both, hn::Set(d, weight[i])));
    }
    hn::StoreU(hn::Mul(sum, hn::Set(d, scale)), d, to);
}

template <class D>
void weighSome(D d, const float* const rows[4], const float weight[4], int x, float* to) {
    auto sum = hn::Mul(hn::LoadU(d, rows[0] + x), hn::Set(d, weight[0]));
    for (int i = 1; i < 4; ++i)
        sum = hn::Add(sum, hn::Mul(hn::LoadU(d, rows[i] + x), hn::Set(d, weight[i])));
    hn::StoreU(sum, d, to + x);
}

void blurCells(const float* from, std::ptrdiff_t step, const float* weight, int radius, float* to,
               int count, float scale) {
    const hn::CappedTag<float, 16> d;
    const hn::CappedTag<float, 1> single;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= count; x += lanes)
        blurSome(d, from + x, step, weight, radius, to + x, scale);
    for (; x < count; ++x)
        blurSome(single, from + x, step, weight, radius, to + x, scale);
}

void weighCells(const float* const rows[4], const float weight[4], float* to, int count) {
    const hn::CappedTag<float, 16> d;
    const hn::CappedTag<float, 1> single;
    const int lanes = static_cast<int>(hn::Lanes(d));
    int x = 0;
    for (; x + lanes <= count; x += lanes)
        weighSome(d, rows, weight, x, to);
    for (; x < count; ++x)
        weighSome(single, rows, weight, x, to);
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(blurCells);
HWY_EXPORT(weighCells);

void blurCells(const float* from, std::ptrdiff_t step, const float* weight, int radius, float* to,
               int count, float scale) {
    HWY_DYNAMIC_DISPATCH(blurCells)(from, step, weight, radius, to, count, scale);
}
void weighCells(const float* const rows[4], const float weight[4], float* to, int count) {
    HWY_DYNAMIC_DISPATCH(weighCells)(rows, weight, to, count);
}

}  // namespace platform
#endif
