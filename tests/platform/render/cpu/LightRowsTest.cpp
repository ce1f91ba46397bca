// SPDX-License-Identifier: MIT
#include "platform/render/cpu/LightRows.h"

#include <gmock/gmock.h>

#include <numeric>
#include <vector>

#include "platform/render/BloomPlan.h"
#include "platform/render/cpu/RowPool.h"
#include "platform/scene/Shading.h"
#include "platform/time/RandomSource.h"

namespace platform::test {
namespace {

using testing::ElementsAreArray;

class LightRows : public testing::Test {
  protected:
    static constexpr int kWidth = 101;

    std::vector<std::uint16_t> someLight() {
        std::vector<std::uint16_t> light(4 * kWidth);
        for (std::uint16_t& value : light)
            value = static_cast<std::uint16_t>(random_.coin() ? random_.below(65536)
                                                              : random_.below(40));
        // A stretch of black, whose fourth components are not.
        for (int x = 20; x < 50; ++x)
            std::fill_n(light.begin() + 4 * x, 3, std::uint16_t{0});
        return light;
    }
    std::vector<std::int16_t> somePicture(int count) {
        std::vector<std::int16_t> picture(static_cast<std::size_t>(4 * count));
        for (std::int16_t& value : picture)
            value = static_cast<std::int16_t>(random_.below(255 * rows::kStep + 1));
        return picture;
    }

    RandomSource random_{9};
};

TEST_F(LightRows, EncodingIsTheFormula) {
    for (const double linear : {0.0, 0.001, 0.0031, 0.02, 0.18, 0.5, 0.99, 1.0}) {
        const auto value = static_cast<std::uint16_t>(linear * rows::kWhite);
        const std::vector<std::uint16_t> light{value, 0, 0, 7};
        std::vector<std::int16_t> picture(4);
        rows::encode(light.data(), nullptr, 1, picture.data());
        EXPECT_NEAR(picture[2], 255.0 * rows::kStep * srgbEncode(1.0 * value / rows::kWhite), 0.5);
        EXPECT_EQ(picture[0], 0);
        EXPECT_EQ(picture[3], 0);
    }
}

TEST_F(LightRows, BrighterThanWhiteIsWhite) {
    const std::vector<std::uint16_t> light{65535, rows::kWhite, 60000, 0, 1, 1, 1, 1};
    const std::vector<std::uint16_t> bloom{65535, 1, 10000, 0, 0, 0, 0, 0};
    std::vector<std::int16_t> picture(8);
    rows::encode(light.data(), bloom.data(), 2, picture.data());
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(picture[static_cast<std::size_t>(i)], 255 * rows::kStep);
}

TEST_F(LightRows, EncodingIsTheSameWithoutVectorInstructions) {
    for (int count = 1; count <= kWidth; ++count) {
        const auto light = someLight();
        const auto bloom = someLight();
        for (const std::uint16_t* glow :
             {static_cast<const std::uint16_t*>(nullptr), bloom.data()}) {
            std::vector<std::int16_t> fast(4 * kWidth), portable(4 * kWidth);
            const rows::Extent a = rows::encode(light.data(), glow, count, fast.data());
            const rows::Extent b = rows::encodePortable(light.data(), glow, count, portable.data());
            ASSERT_THAT(fast, ElementsAreArray(portable)) << count;
            // Black ends may be found by pairs.
            EXPECT_LE(a.from, b.from);
            EXPECT_GE(a.to, b.to);
        }
    }
}

TEST_F(LightRows, TheExtentHoldsAllThatIsNotBlack) {
    std::vector<std::uint16_t> light(4 * kWidth, 0);
    std::vector<std::int16_t> picture(4 * kWidth);
    EXPECT_TRUE(rows::encode(light.data(), nullptr, kWidth, picture.data()).isEmpty());
    light[4 * 30 + 1] = 1;
    light[4 * 71] = 9;
    const rows::Extent extent = rows::encode(light.data(), nullptr, kWidth, picture.data());
    EXPECT_LE(extent.from, 30);
    EXPECT_GT(extent.from, 28);
    EXPECT_GE(extent.to, 72);
    EXPECT_LT(extent.to, 74);
}

TEST_F(LightRows, CubicWeightsAreWholeAndExactAtPixels) {
    for (double share = 0.0; share < 1.0; share += 0.013) {
        const auto weights = rows::cubicWeights(share);
        EXPECT_EQ(std::accumulate(weights.begin(), weights.end(), 0), rows::kWhole);
    }
    EXPECT_THAT(rows::cubicWeights(0.0), ElementsAreArray({0, rows::kWhole, 0, 0}));
}

TEST_F(LightRows, StretchingIsTheSameWithoutVectorInstructions) {
    const auto from = somePicture(40);
    std::vector<rows::Taps> taps;
    for (int x = 0; x < kWidth; ++x)
        taps.push_back({x * 36 / kWidth, rows::cubicWeights(random_.unit())});
    for (int first = 0; first < 5; ++first) {
        std::vector<std::int16_t> fast(4 * kWidth), portable(4 * kWidth);
        rows::stretch(from.data(), taps.data(), first, kWidth - first, fast.data());
        rows::stretchPortable(from.data(), taps.data(), first, kWidth - first, portable.data());
        EXPECT_THAT(fast, ElementsAreArray(portable));
    }
}

TEST_F(LightRows, MixingIsTheSameWithoutVectorInstructions) {
    std::array<std::vector<std::int16_t>, 4> pictures;
    rows::FourRows four{{}, rows::cubicWeights(0.37)};
    for (std::size_t i = 0; i < 4; ++i) {
        pictures[i] = somePicture(kWidth);
        four.row[i] = pictures[i].data();
    }
    std::vector<std::int32_t> noise;
    for (int x = 0; x < kWidth; ++x)
        noise.push_back(static_cast<std::int32_t>(random_.below(rows::kStep * rows::kWhole)));
    for (int first = 0; first < 6; ++first) {
        std::vector<std::uint32_t> fast(kWidth), portable(kWidth);
        rows::mix(four, noise.data(), first, kWidth - first, fast.data());
        rows::mixPortable(four, noise.data(), first, kWidth - first, portable.data());
        EXPECT_THAT(fast, ElementsAreArray(portable));
    }
}

TEST_F(LightRows, RoundingIsRightOnAverage) {
    // A value a quarter of the way between two steps shows the upper one as often.
    std::vector<std::int16_t> even(4 * kWidth, static_cast<std::int16_t>(100 * rows::kStep + 16));
    const rows::FourRows four{{even.data(), even.data(), even.data(), even.data()},
                              rows::cubicWeights(0.0)};
    std::vector<std::int32_t> noise;
    for (int x = 0; x < kWidth; ++x)
        noise.push_back(rows::kStep * rows::kWhole / kWidth * x);
    std::vector<std::uint32_t> picture(kWidth);
    rows::mix(four, noise.data(), 0, kWidth, picture.data());
    int upper = 0;
    for (const std::uint32_t pixel : picture) {
        EXPECT_TRUE(pixel == 0xFF646464U || pixel == 0xFF656565U);
        if (pixel == 0xFF656565U) ++upper;
    }
    EXPECT_NEAR(upper, 0.25 * kWidth, 1.5);
}

TEST_F(LightRows, LightIsPutSaturated) {
    std::array<std::uint16_t, 4> to{};
    rows::putLight(rows::Light{0.0F, 1.9F, 40000.5F, 90000.0F}, to.data());
    EXPECT_THAT(to, ElementsAreArray({0, 1, 40000, 65535}));
}

TEST(BloomPlan, WeightsAreWholeAndTheTapsAgreeWithThem) {
    for (const double sigma : {0.5, 2.0, 4.0, 7.0, 9.1, 14.0, 40.0, 300.0}) {
        for (const bool fine : {true, false}) {
            const BloomPlan plan = planBloom({.size = {1920, 1080}, .sigma = sigma, .fine = fine});
            double weights = plan.weight[0];
            for (int i = 1; i <= plan.radius; ++i)
                weights += 2.0 * plan.weight[static_cast<std::size_t>(i)];
            double taps = plan.weight[0];
            for (int i = 0; i < plan.taps; ++i)
                taps += 2.0 * plan.tap[static_cast<std::size_t>(i)].y;
            EXPECT_NEAR(weights, 1.0, 1e-5);
            EXPECT_NEAR(taps, 1.0, 1e-5);
            EXPECT_LE(plan.taps, BloomPlan::kMaxTaps);
        }
    }
}

TEST(BloomPlan, TheBlurIsNeverCoarseOnItsImageNorNeedlesslyFine) {
    for (double sigma = 4.0; sigma < 100.0; sigma *= 1.1)
        for (const bool fine : {true, false}) {
            const BloomPlan plan = planBloom({.size = {3840, 2160}, .sigma = sigma, .fine = fine});
            EXPECT_GT(plan.sigma, 1.5);
            EXPECT_LT(plan.sigma, 5.2);
        }
}

TEST(BloomPlan, SizesAreRoundedUp) {
    const BloomPlan plan = planBloom({.size = {1001, 7}, .sigma = 16.0, .fine = false});
    EXPECT_EQ(plan.reduction(), 8);
    EXPECT_EQ(plan.size, QSize(126, 1));
}

TEST(RowPool, EveryPartIsDoneOnceAndBeforeTheReturn) {
    RowPool pool;
    for (int round = 0; round < 200; ++round) {
        std::vector<int> done(37, 0);
        pool.run(37, [&](int part) { ++done[static_cast<std::size_t>(part)]; });
        EXPECT_THAT(done, testing::Each(1));
    }
    pool.run(0, [](int) { FAIL(); });
}

TEST(RowPool, OneThreadIsEnough) {
    RowPool pool(1);
    EXPECT_EQ(pool.threads(), 1);
    int sum = 0;
    pool.run(5, [&](int part) { sum += part; });
    EXPECT_EQ(sum, 10);
}

}  // namespace
}  // namespace platform::test
