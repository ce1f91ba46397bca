// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/GlowCells.h"

#include <algorithm>

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
void blurSome(D d, const float* from, std::ptrdiff_t step, const BlurWeights& weights, float* to) {
    auto sum = hn::Mul(hn::LoadU(d, from), hn::Set(d, weights.weight[0]));
    for (int i = 1; i <= weights.radius; ++i) {
        const auto both = hn::Add(hn::LoadU(d, from - i * step), hn::LoadU(d, from + i * step));
        sum = hn::Add(sum, hn::Mul(both, hn::Set(d, weights.weight[i])));
    }
    hn::StoreU(hn::Mul(sum, hn::Set(d, weights.scale)), d, to);
}

template <class D>
void weighSome(D d, const float* const rows[4], const float weight[4], int x, float* to) {
    auto sum = hn::Mul(hn::LoadU(d, rows[0] + x), hn::Set(d, weight[0]));
    for (int i = 1; i < 4; ++i)
        sum = hn::Add(sum, hn::Mul(hn::LoadU(d, rows[i] + x), hn::Set(d, weight[i])));
    hn::StoreU(sum, d, to + x);
}

void blurCells(const CellBox& from, std::ptrdiff_t step, const BlurWeights& weights, float* to) {
    const hn::CappedTag<float, 16> d;
    const hn::CappedTag<float, 1> single;
    const int lanes = static_cast<int>(hn::Lanes(d));
    for (int row = 0; row < from.height; ++row) {
        const float* const line = from.first + row * from.stride;
        float* const result = to + row * from.stride;
        int x = 0;
        for (; x + lanes <= from.width; x += lanes)
            blurSome(d, line + x, step, weights, result + x);
        for (; x < from.width; ++x)
            blurSome(single, line + x, step, weights, result + x);
    }
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

hn::Vec<hn::CappedTag<float, 16>> phaseOf(const float* from, const GlowPhase& phase) {
    const hn::CappedTag<float, 16> d;
    auto sum = hn::Mul(hn::LoadU(d, from + phase.first), hn::Set(d, phase.weight[0]));
    for (int i = 1; i < 4; ++i)
        sum = hn::Add(sum, hn::Mul(hn::LoadU(d, from + phase.first + i),
                                   hn::Set(d, phase.weight[static_cast<std::size_t>(i)])));
    return sum;
}

void stretchCells(const float* from, std::span<const GlowPhase> phases, float* to, int cells) {
    const hn::CappedTag<float, 16> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    if (phases.size() == 4 && cells % lanes == 0) {
        for (int x = 0; x < cells; x += lanes)
            hn::StoreInterleaved4(phaseOf(from + x, phases[0]), phaseOf(from + x, phases[1]),
                                  phaseOf(from + x, phases[2]), phaseOf(from + x, phases[3]), d,
                                  to + 4 * static_cast<std::ptrdiff_t>(x));
        return;
    }
    if (phases.size() == 2 && cells % lanes == 0) {
        for (int x = 0; x < cells; x += lanes)
            hn::StoreInterleaved2(phaseOf(from + x, phases[0]), phaseOf(from + x, phases[1]), d,
                                  to + 2 * static_cast<std::ptrdiff_t>(x));
        return;
    }
    std::array<float, 64> phase{};
    const auto step = static_cast<std::ptrdiff_t>(phases.size());
    for (std::ptrdiff_t i = 0; i < step; ++i) {
        const GlowPhase& p = phases[static_cast<std::size_t>(i)];
        const float* const four[4] = {from + p.first, from + p.first + 1, from + p.first + 2,
                                      from + p.first + 3};
        weighCells(four, p.weight.data(), phase.data(), cells);
        for (int cell = 0; cell < cells; ++cell)
            to[cell * step + i] = phase[static_cast<std::size_t>(cell)];
    }
}

float mostOf(const CellBox& from) {
    const hn::CappedTag<float, 16> d;
    const int lanes = static_cast<int>(hn::Lanes(d));
    auto most = hn::Zero(d);
    float rest = 0.0F;
    for (int row = 0; row < from.height; ++row) {
        const float* const line = from.first + row * from.stride;
        if (from.width < lanes) {
            for (int x = 0; x < from.width; ++x)
                rest = std::max(rest, line[x]);
            continue;
        }
        // The last vector begins again before the end.
        for (int x = 0; x < from.width; x += lanes)
            most = hn::Max(most, hn::LoadU(d, line + std::min(x, from.width - lanes)));
    }
    return std::max(rest, hn::GetLane(hn::MaxOfLanes(d, most)));
}

}  // namespace
}  // namespace platform::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace platform {

HWY_EXPORT(blurCells);
HWY_EXPORT(weighCells);
HWY_EXPORT(stretchCells);
HWY_EXPORT(mostOf);

void blurCells(const CellBox& from, std::ptrdiff_t step, const BlurWeights& weights, float* to) {
    HWY_DYNAMIC_DISPATCH(blurCells)(from, step, weights, to);
}
void weighCells(const float* const rows[4], const float weight[4], float* to, int count) {
    HWY_DYNAMIC_DISPATCH(weighCells)(rows, weight, to, count);
}

void stretchCells(const float* from, std::span<const GlowPhase> phases, float* to, int cells) {
    HWY_DYNAMIC_DISPATCH(stretchCells)(from, phases, to, cells);
}
float mostOf(const CellBox& from) {
    return HWY_DYNAMIC_DISPATCH(mostOf)(from);
}

}  // namespace platform
#endif
