// SPDX-License-Identifier: MIT
#include "platform/render/BloomPlan.h"

#include <algorithm>
#include <cmath>

#include "platform/scene/Shading.h"

namespace platform {

namespace {

// In pixels of the smallest image. A smaller sigma shows a grid; a larger one costs more work.
constexpr double kLeastSigma = 1.75;
constexpr double kLeastFineSigma = 2.5;
constexpr int kMaxReduction = 64;
constexpr int kMaxSplineReduction = 16;
constexpr int kMaxFactor = 4;

void setWeights(BloomPlan& plan) {
    constexpr int kMaxRadius = 2 * BloomPlan::kMaxTaps;
    plan.radius = std::clamp(static_cast<int>(std::ceil(3.0 * plan.sigma)), 1, kMaxRadius);
    std::array<double, kMaxRadius + 2> weights{};
    double sum = 0.0;
    for (int i = 0; i <= plan.radius; ++i) {
        weights[static_cast<std::size_t>(i)] = gaussian(i, plan.sigma);
        sum += weights[static_cast<std::size_t>(i)] * (i == 0 ? 1.0 : 2.0);
    }
    for (std::size_t i = 0; i < plan.weight.size(); ++i) {
        weights[i] /= sum;
        plan.weight[i] = static_cast<float>(weights[i]);
    }
    plan.taps = (plan.radius + 1) / 2;
    for (int i = 0; i < plan.taps; ++i) {
        const double near = weights[static_cast<std::size_t>(2 * i + 1)];
        const double far = weights[static_cast<std::size_t>(2 * i + 2)];
        const double both = near + far;
        plan.tap[static_cast<std::size_t>(i)] = {
            static_cast<float>(2 * i + 1 + (both > 0.0 ? far / both : 0.0)),
            static_cast<float>(both)};
    }
}

}  // namespace

QSize BloomPlan::reduced(QSize size, int by) {
    return {(size.width() + by - 1) / by, (size.height() + by - 1) / by};
}

BloomPlan planBloom(const BloomRequest& request) {
    const double least = request.fine && !request.spline ? kLeastFineSigma : kLeastSigma;
    int reduction = request.spline ? 2 : 1;
    const int most = request.spline ? kMaxSplineReduction : kMaxReduction;
    while (reduction < most && request.sigma / (2 * reduction) >= least)
        reduction *= 2;
    BloomPlan plan;
    plan.factor = std::min(reduction, kMaxFactor);
    while (plan.reduction() < reduction)
        ++plan.halvings;
    plan.size = BloomPlan::reduced(request.size, reduction);
    const double wanted = request.sigma / reduction;
    const double averaging = (1.0 - 1.0 / (reduction * reduction)) / 12.0;
    const double stretching = request.fine || request.spline ? 1.0 / 3.0
                              : reduction > 1                ? 1.0 / 6.0
                                                             : 0.0;
    plan.sigma = std::sqrt(std::max(wanted * wanted - averaging - stretching, 0.01));
    setWeights(plan);
    return plan;
}

}  // namespace platform
