// SPDX-License-Identifier: MIT
#include "platform/render/cpu/SceneDeveloper.h"

#include <algorithm>
#include <cmath>

#include "platform/scene/Shading.h"

namespace platform {

namespace {

constexpr int kMargin = 4;  // pixels either side of an encoded row
constexpr int kNoiseRows = 64;
constexpr std::uint32_t kOpaqueBlack = 0xFF000000U;

// The pattern of the shader's last step.
std::int32_t grain(int x, int y) {
    const auto fraction = [](double value) { return value - static_cast<int>(value); };
    const double share = fraction(52.9829189 * fraction(0.06711056 * x + 0.00583715 * y));
    return static_cast<std::int32_t>(share * rows::kStep * rows::kWhole);
}

void setTaps(std::vector<rows::Taps>& taps, int from, int to) {
    taps.resize(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double at = (i + 0.5) * from / to - 0.5;
        const double base = std::floor(at);
        taps[static_cast<std::size_t>(i)] = {static_cast<int>(base) - 1,
                                             rows::cubicWeights(at - base)};
    }
}

std::size_t areaOf(QSize size) {
    return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
}

template <typename Vector>
Vector splat(float value) {
    return Vector{value, value, value, value};
}

}  // namespace

void SceneDeveloper::fit(QSize scene, QSize shown, const Bloom& bloom) {
    if (!desks_.empty() && light_.size == scene && planned_.sigma == bloom.sigma && shown == shown_)
        return;
    planned_ = {scene, bloom.sigma, false};
    plan_ = planBloom(planned_);
    shown_ = shown;
    bright_.resize(areaOf(plan_.size));
    blurred_.resize(areaOf(plan_.size));
    desks_.resize(static_cast<std::size_t>(2 * pool_.threads()));
    for (Desk& desk : desks_) {
        desk.sums.resize(4 * static_cast<std::size_t>(scene.width()));
        desk.glow.resize(static_cast<std::size_t>(plan_.size.width()));
        desk.bloom.resize(4 * static_cast<std::size_t>(scene.width()));
        desk.encoded.resize(4 * static_cast<std::size_t>(scene.width() + 2 * kMargin));
        for (Row& row : desk.rows)
            row.pixels.resize(4 * static_cast<std::size_t>(shown.width()));
    }
    setTaps(across_, scene.width(), shown.width());
    setTaps(down_, scene.height(), shown.height());
    noise_.clear();
    for (int y = 0; y < kNoiseRows; ++y)
        for (int x = 0; x < shown.width(); ++x)
            noise_.push_back(grain(x, y));
}

template <typename Work>
void SceneDeveloper::forRows(int rows, const Work& work) {
    const int bands = static_cast<int>(desks_.size());
    pool_.run(bands, [&](int band) {
        Desk& desk = desks_[static_cast<std::size_t>(band)];
        for (int row = rows * band / bands; row < rows * (band + 1) / bands; ++row)
            work(row, desk);
    });
}

void SceneDeveloper::develop(const SceneLight& light, const Bloom& bloom,
                             const PixelBuffer& picture) {
    fit(light.size, picture.size, bloom);
    light_ = light;
    for (Desk& desk : desks_)
        for (Row& row : desk.rows)
            row.number = -1;
    if (bloom.intensity > 0.0F) {
        const int rows = plan_.size.height();
        forRows(rows, [&](int row, Desk& desk) { gatherBright(row, bloom.threshold, desk); });
        forRows(rows, [&](int row, Desk&) { blurAlong(row); });
        forRows(rows, [&](int row, Desk&) { blurAcross(row); });
    }
    forRows(shown_.height(), [&](int y, Desk& desk) {
        show(y, bloom.intensity, desk,
             picture.pixels + static_cast<std::ptrdiff_t>(y) * picture.stride);
    });
}

void SceneDeveloper::gatherBright(int row, float threshold, Desk& desk) {
    const int reduction = plan_.reduction();
    const int width = light_.size.width();
    const auto dark =
        static_cast<std::uint16_t>(std::clamp(threshold * rows::kWhite, 0.0F, 65535.0F));
    std::fill(desk.sums.begin(), desk.sums.end(), 0U);
    for (int i = 0; i < reduction; ++i) {
        const int y = std::min(row * reduction + i, light_.size.height() - 1);
        const std::uint16_t* const from =
            light_.pixels + 4 * static_cast<std::ptrdiff_t>(y) * width;
        std::uint32_t* const sums = desk.sums.data();
        for (int x = 0; x < 4 * width; ++x) {
            const std::uint16_t above = from[x] > dark ? from[x] - dark : 0;
            sums[x] += above;
        }
    }
    const float share = 1.0F / static_cast<float>(reduction * reduction);
    Glow* const to = bright_.data() + static_cast<std::ptrdiff_t>(row) * plan_.size.width();
    for (int cell = 0; cell < plan_.size.width(); ++cell) {
        std::array<std::uint32_t, 3> sum{};
        for (int i = 0; i < reduction; ++i) {
            const std::uint32_t* const at =
                &desk.sums[static_cast<std::size_t>(4 * std::min(cell * reduction + i, width - 1))];
            for (std::size_t k = 0; k < sum.size(); ++k)
                sum[k] += at[k];
        }
        to[cell] = share * Glow{static_cast<float>(sum[0]), static_cast<float>(sum[1]),
                                static_cast<float>(sum[2]), 0.0F};
    }
}

void SceneDeveloper::blurAlong(int row) {
    const int last = plan_.size.width() - 1;
    const Glow* const from = bright_.data() + static_cast<std::ptrdiff_t>(row) * (last + 1);
    Glow* const to = blurred_.data() + static_cast<std::ptrdiff_t>(row) * (last + 1);
    for (int x = 0; x <= last; ++x) {
        Glow sum = from[x] * splat<Glow>(plan_.weight[0]);
        for (int i = 1; i <= plan_.radius; ++i)
            sum += (from[std::max(x - i, 0)] + from[std::min(x + i, last)]) *
                   splat<Glow>(plan_.weight[static_cast<std::size_t>(i)]);
        to[x] = sum;
    }
}

void SceneDeveloper::blurAcross(int row) {
    const int width = plan_.size.width();
    const int last = plan_.size.height() - 1;
    const auto rowAt = [&](int y) {
        return blurred_.data() + static_cast<std::ptrdiff_t>(std::clamp(y, 0, last)) * width;
    };
    Glow* const to = bright_.data() + static_cast<std::ptrdiff_t>(row) * width;
    const Glow* const middle = rowAt(row);
    for (int x = 0; x < width; ++x)
        to[x] = middle[x] * splat<Glow>(plan_.weight[0]);
    for (int i = 1; i <= plan_.radius; ++i) {
        const Glow* const above = rowAt(row - i);
        const Glow* const below = rowAt(row + i);
        const Glow weight = splat<Glow>(plan_.weight[static_cast<std::size_t>(i)]);
        for (int x = 0; x < width; ++x)
            to[x] += (above[x] + below[x]) * weight;
    }
}

// The bloom at one row of the scene, at the bloom's own pixels along it. False
// if there is none.
bool SceneDeveloper::placeGlow(int row, float intensity, Desk& desk) const {
    const int width = plan_.size.width();
    const double at = (row + 0.5) / plan_.reduction() - 0.5;
    const double base = std::floor(at);
    const auto rowAt = [&](double y) {
        const double inside = std::clamp(y, 0.0, plan_.size.height() - 1.0);
        return bright_.data() + static_cast<std::ptrdiff_t>(inside) * width;
    };
    const Glow* const a = rowAt(base);
    const Glow* const b = rowAt(base + 1.0);
    const auto share = static_cast<float>(at - base);
    Glow all{};
    for (int x = 0; x < width; ++x) {
        const Glow sum =
            a[x] * splat<Glow>((1.0F - share) * intensity) + b[x] * splat<Glow>(share * intensity);
        desk.glow[static_cast<std::size_t>(x)] = sum;
        all += sum;
    }
    return all[0] + all[1] + all[2] >= 1.0F;
}

// Linear between the middles of two of the bloom's pixels.
void SceneDeveloper::spreadGlow(Desk& desk) const {
    const int width = light_.size.width();
    const int reduction = plan_.reduction();
    const int lastCell = plan_.size.width() - 1;
    std::uint16_t* const to = desk.bloom.data();
    for (int x = 0, cell = reduction > 1 ? -1 : 0; x < width; ++cell) {
        const int begin = reduction * cell + reduction / 2;
        const int end = std::min(begin + reduction, width);
        const Glow a = desk.glow[static_cast<std::size_t>(std::max(cell, 0))];
        const Glow b = desk.glow[static_cast<std::size_t>(std::min(cell + 1, lastCell))];
        const Glow step =
            reduction > 1 ? (b - a) * splat<Glow>(1.0F / static_cast<float>(reduction)) : Glow{};
        Glow glow = a + step * splat<Glow>(static_cast<float>(x - begin) + 0.5F);
        for (; x < end; ++x, glow += step)
            rows::putLight(glow, to + 4 * static_cast<std::ptrdiff_t>(x));
    }
}

void SceneDeveloper::stretch(Desk& desk, rows::Extent encoded, Row& row) const {
    const int width = light_.size.width();
    const int shown = shown_.width();
    std::int16_t* const from = desk.encoded.data() + 4 * kMargin;
    const bool black = encoded.isEmpty();
    for (int i = 1; i <= kMargin; ++i) {
        std::copy_n(from, 4, from - 4 * i);
        std::copy_n(from + 4 * (width - 1), 4, from + 4 * (width - 1 + i));
    }
    const double times = static_cast<double>(shown) / width;
    const int first =
        black ? 0 : std::clamp(static_cast<int>((encoded.from - 3) * times), 0, shown);
    const int last =
        black ? 0 : std::clamp(static_cast<int>(std::ceil((encoded.to + 3) * times)), first, shown);
    std::int16_t* const to = row.pixels.data();
    std::fill(to, to + 4 * first, std::int16_t{0});
    rows::stretch(from, across_.data(), first, last, to);
    std::fill(to + 4 * last, to + 4 * shown, std::int16_t{0});
    row.extent = {first, last};
}

const SceneDeveloper::Row& SceneDeveloper::stretched(int number, float intensity,
                                                     Desk& desk) const {
    const int inside = std::clamp(number, 0, light_.size.height() - 1);
    Row& row = desk.rows[static_cast<std::size_t>(inside % 4)];
    if (row.number == inside) return row;
    row.number = inside;
    const bool glows = intensity > 0.0F && placeGlow(inside, intensity, desk);
    if (glows) spreadGlow(desk);
    const int width = light_.size.width();
    const std::uint16_t* const light =
        light_.pixels + 4 * static_cast<std::ptrdiff_t>(inside) * width;
    const rows::Extent encoded = rows::encode(light, glows ? desk.bloom.data() : nullptr, width,
                                              desk.encoded.data() + 4 * kMargin);
    stretch(desk, encoded, row);
    return row;
}

void SceneDeveloper::show(int y, float intensity, Desk& desk, std::uint32_t* to) const {
    // The light's rows stand the other way up.
    const rows::Taps& down = down_[static_cast<std::size_t>(shown_.height() - 1 - y)];
    rows::FourRows four{{}, down.weight};
    int first = shown_.width();
    int last = 0;
    for (int i = 0; i < 4; ++i) {
        const Row& row = stretched(down.first + i, intensity, desk);
        four.row[static_cast<std::size_t>(i)] = row.pixels.data();
        if (row.extent.isEmpty()) continue;
        first = std::min(first, row.extent.from);
        last = std::max(last, row.extent.to);
    }
    last = std::max(first, last);
    const std::int32_t* const noise =
        noise_.data() + static_cast<std::ptrdiff_t>(y % kNoiseRows) * shown_.width();
    std::fill(to, to + first, kOpaqueBlack);
    rows::mix(four, noise, first, last, to);
    std::fill(to + last, to + shown_.width(), kOpaqueBlack);
}

}  // namespace platform
