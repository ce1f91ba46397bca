// SPDX-License-Identifier: MIT
#include "platform/render/BloomPlan.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/scene/Shading.h"

namespace platform {

namespace {

// In pixels of the smallest image: less shows as a grid, more is work.
constexpr double kLeastSigma = 1.75;
constexpr double kLeastFineSigma = 2.5;
constexpr int kMaxReduction = 64;
constexpr int kMaxFactor = 4;

void setTaps(BloomPlan& plan) {
    const int radius =
        std::clamp(static_cast<int>(std::ceil(3.0 * plan.sigma)), 1, 2 * BloomPlan::kMaxTaps);
    std::vector<double> weights(static_cast<std::size_t>(radius) + 2, 0.0);
    double sum = 0.0;
    for (int i = 0; i <= radius; ++i) {
        const double weight = gaussian(i, plan.sigma);
        weights[static_cast<std::size_t>(i)] = weight;
        sum += i == 0 ? weight : 2.0 * weight;
    }
    plan.middle = static_cast<float>(weights[0] / sum);
    plan.taps = (radius + 1) / 2;
    for (int i = 0; i < plan.taps; ++i) {
        const double near = weights[static_cast<std::size_t>(2 * i + 1)] / sum;
        const double far = weights[static_cast<std::size_t>(2 * i + 2)] / sum;
        plan.tap[static_cast<std::size_t>(i)] = {static_cast<float>(2 * i + 1 + far / (near + far)),
                                                 static_cast<float>(near + far)};
    }
}

}  // namespace

QSize BloomPlan::reduced(QSize size, int by) {
    return {(size.width() + by - 1) / by, (size.height() + by - 1) / by};
}

BloomPlan planBloom(const BloomRequest& request) {
    const double least = request.fine ? kLeastFineSigma : kLeastSigma;
    int reduction = 1;
    while (reduction < kMaxReduction && request.sigma / (2 * reduction) >= least)
        reduction *= 2;
    BloomPlan plan;
    plan.factor = std::min(reduction, kMaxFactor);
    while (plan.reduction() < reduction)
        ++plan.halvings;
    plan.size = BloomPlan::reduced(request.size, reduction);
    const double wanted = request.sigma / reduction;
    const double averaging = (1.0 - 1.0 / (reduction * reduction)) / 12.0;
    const double stretching = request.fine ? 1.0 / 3.0 : reduction > 1 ? 1.0 / 6.0 : 0.0;
    plan.sigma = std::sqrt(std::max(wanted * wanted - averaging - stretching, 0.01));
    setTaps(plan);
    return plan;
}

}  // namespace platform
