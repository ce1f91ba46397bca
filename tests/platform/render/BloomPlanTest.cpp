// SPDX-License-Identifier: MIT
// The bloom's blur as its plan says: averaged to a smaller picture, blurred,
// stretched in straight lines.
#include "platform/render/BloomPlan.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using platform::BloomPlan;
using platform::planBloom;

namespace {

constexpr int kLength = 2048;

// What one pixel's light has become, along a row of kLength pixels.
std::vector<double> spread(const BloomPlan& plan, int lit) {
    const int by = plan.reduction();
    const int cells = kLength / by;
    std::vector<double> small(static_cast<std::size_t>(cells), 0.0), blurred(small);
    small[static_cast<std::size_t>(lit / by)] = 1.0 / by;
    for (int x = 0; x < cells; ++x)
        for (int i = -plan.radius; i <= plan.radius; ++i)
            if (x + i >= 0 && x + i < cells)
                blurred[static_cast<std::size_t>(x)] +=
                    plan.weight[static_cast<std::size_t>(std::abs(i))] *
                    small[static_cast<std::size_t>(x + i)];
    // Between the middles of two cells the light is mixed.
    std::vector<double> row;
    for (int x = 0; x < kLength; ++x) {
        const double place = (x + 0.5) / by - 0.5;
        const auto left = static_cast<int>(std::floor(place));
        const double share = place - left;
        const auto at = [&](int cell) {
            return cell < 0 || cell >= cells ? 0.0 : blurred[static_cast<std::size_t>(cell)];
        };
        row.push_back((1.0 - share) * at(left) + share * at(left + 1));
    }
    return row;
}

TEST(BloomPlan, SpreadsLightByItsSigmaAndKeepsItsSum) {
    for (const double sigma : {3.0, 7.0, 14.0, 28.0, 50.0}) {
        const BloomPlan plan = planBloom({.size = {kLength, 64}, .sigma = sigma, .fine = false});
        double sum = 0.0, mean = 0.0, square = 0.0;
        // Over all places that a pixel can have in its cell.
        for (int phase = 0; phase < plan.reduction(); ++phase) {
            const int lit = kLength / 2 + phase;
            const auto row = spread(plan, lit);
            for (int x = 0; x < kLength; ++x) {
                const double light = row[static_cast<std::size_t>(x)] / plan.reduction();
                sum += light;
                mean += light * (x - lit);
                square += light * (x - lit) * (x - lit);
            }
        }
        EXPECT_NEAR(sum, 1.0, 1e-3) << sigma;
        EXPECT_NEAR(mean, 0.0, 0.01 * sigma) << sigma;
        EXPECT_NEAR(std::sqrt(square), sigma, 0.05 * sigma) << sigma;
    }
}

TEST(BloomPlan, AWiderBlurWorksOnASmallerPicture) {
    const BloomPlan narrow = planBloom({.size = {kLength, 64}, .sigma = 3.0, .fine = false});
    const BloomPlan wide = planBloom({.size = {kLength, 64}, .sigma = 50.0, .fine = false});
    EXPECT_LT(narrow.reduction(), wide.reduction());
    EXPECT_EQ(wide.size, BloomPlan::reduced({kLength, 64}, wide.reduction()));
}

}  // namespace
