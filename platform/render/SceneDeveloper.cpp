// SPDX-License-Identifier: MIT
#include "platform/render/SceneDeveloper.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "platform/scene/Shading.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace platform {

namespace {

using Pixel = SceneDeveloper::Pixel;

constexpr int kMargin = 4;
constexpr int kWhite = 16384;  // one unit of light; see kSixteenBits
constexpr int kNoiseSize = 64;
constexpr std::uint32_t kOpaqueBlack = 0xFF000000U;

// 0 to 255 by light; what is brighter than white is white.
const std::vector<float>& encoding() {
    static const std::vector<float> kTable = [] {
        std::vector<float> table(kWhite + 1);
        for (int i = 0; i <= kWhite; ++i)
            table[static_cast<std::size_t>(i)] =
                static_cast<float>(255.0 * srgbEncode(static_cast<double>(i) / kWhite));
        return table;
    }();
    return kTable;
}

// Added before the fraction is cut off; the pattern of the shader's last step.
const std::vector<float>& noise() {
    static const std::vector<float> kTable = [] {
        const auto fraction = [](double value) { return value - std::floor(value); };
        std::vector<float> table;
        for (int y = 0; y < kNoiseSize; ++y)
            for (int x = 0; x < kNoiseSize; ++x)
                table.push_back(static_cast<float>(
                    fraction(52.9829189 * fraction(0.06711056 * x + 0.00583715 * y))));
        return table;
    }();
    return kTable;
}

bool isBlack(const Pixel& pixel) {
    return pixel[0] == 0.0F && pixel[1] == 0.0F && pixel[2] == 0.0F;
}

Pixel splat(float value) {
    return Pixel{value, value, value, value};
}

#if defined(__SSE2__)
void packFour(std::uint32_t* to, Pixel a, Pixel b, Pixel c, Pixel d) {
    const auto whole = [](Pixel pixel) {
        return _mm_cvttps_epi32(reinterpret_cast<__m128>(pixel));
    };
    const __m128i low = _mm_packs_epi32(whole(a), whole(b));
    const __m128i high = _mm_packs_epi32(whole(c), whole(d));
    const __m128i all =
        _mm_or_si128(_mm_packus_epi16(low, high), _mm_set1_epi32(static_cast<int>(kOpaqueBlack)));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), all);
}
#else
std::uint32_t packed(Pixel pixel) {
    const auto component = [&](int i) {
        return static_cast<std::uint32_t>(std::clamp(static_cast<int>(pixel[i]), 0, 255));
    };
    return kOpaqueBlack | component(2) << 16U | component(1) << 8U | component(0);
}
void packFour(std::uint32_t* to, Pixel a, Pixel b, Pixel c, Pixel d) {
    to[0] = packed(a);
    to[1] = packed(b);
    to[2] = packed(c);
    to[3] = packed(d);
}
#endif

template <typename Taps>
void setTaps(std::vector<Taps>& taps, int from, int to) {
    taps.resize(static_cast<std::size_t>(to));
    for (int i = 0; i < to; ++i) {
        const double at = (i + 0.5) * from / to - 0.5;
        const double base = std::floor(at);
        const auto f = static_cast<float>(at - base);
        const float f2 = f * f;
        const float f3 = f2 * f;
        Taps& tap = taps[static_cast<std::size_t>(i)];
        tap.first = static_cast<int>(base) - 1;
        tap.weight = {0.5F * (2.0F * f2 - f3 - f), 0.5F * (3.0F * f3 - 5.0F * f2 + 2.0F),
                      0.5F * (4.0F * f2 - 3.0F * f3 + f), 0.5F * (f3 - f2)};
    }
}

std::size_t areaOf(QSize size) {
    return static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
}

}  // namespace

void SceneDeveloper::fit(QSize scene, QSize shown, const Bloom& bloom) {
    const bool sameScene = !desks_.empty() && light_.size == scene;
    if (!sameScene || planned_.sigma != bloom.sigma) {
        planned_ = {scene, bloom.sigma, false};
        plan_ = planBloom(planned_);
        bright_.resize(areaOf(plan_.size));
        blurred_.resize(areaOf(plan_.size));
        desks_.resize(static_cast<std::size_t>(2 * pool_.threads()));
        for (Desk& desk : desks_) {
            const auto width = static_cast<std::size_t>(scene.width());
            desk.sums.resize(4 * width);
            desk.glow.resize(static_cast<std::size_t>(plan_.size.width()));
            for (Row& row : desk.rows)
                row.pixels.resize(width);
            desk.between.pixels.resize(width + 2 * kMargin);
        }
    }
    if (sameScene && shown == shown_) return;
    shown_ = shown;
    setTaps(across_, scene.width(), shown.width());
    setTaps(down_, scene.height(), shown.height());
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
    const auto dark = static_cast<std::uint16_t>(std::clamp(threshold * kWhite, 0.0F, 65535.0F));
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
    Pixel* const to = bright_.data() + static_cast<std::ptrdiff_t>(row) * plan_.size.width();
    for (int cell = 0; cell < plan_.size.width(); ++cell) {
        std::array<std::uint32_t, 3> sum{};
        for (int i = 0; i < reduction; ++i) {
            const std::uint32_t* const at =
                &desk.sums[static_cast<std::size_t>(4 * std::min(cell * reduction + i, width - 1))];
            for (std::size_t k = 0; k < sum.size(); ++k)
                sum[k] += at[k];
        }
        to[cell] = share * Pixel{static_cast<float>(sum[0]), static_cast<float>(sum[1]),
                                 static_cast<float>(sum[2]), 0.0F};
    }
}

void SceneDeveloper::blurAlong(int row) {
    const int last = plan_.size.width() - 1;
    const Pixel* const from = bright_.data() + static_cast<std::ptrdiff_t>(row) * (last + 1);
    Pixel* const to = blurred_.data() + static_cast<std::ptrdiff_t>(row) * (last + 1);
    for (int x = 0; x <= last; ++x) {
        Pixel sum = from[x] * splat(plan_.weight[0]);
        for (int i = 1; i <= plan_.radius; ++i)
            sum += (from[std::max(x - i, 0)] + from[std::min(x + i, last)]) *
                   splat(plan_.weight[static_cast<std::size_t>(i)]);
        to[x] = sum;
    }
}

void SceneDeveloper::blurAcross(int row) {
    const int width = plan_.size.width();
    const int last = plan_.size.height() - 1;
    const auto rowAt = [&](int y) {
        return blurred_.data() + static_cast<std::ptrdiff_t>(std::clamp(y, 0, last)) * width;
    };
    Pixel* const to = bright_.data() + static_cast<std::ptrdiff_t>(row) * width;
    const Pixel* const middle = rowAt(row);
    for (int x = 0; x < width; ++x)
        to[x] = middle[x] * splat(plan_.weight[0]);
    for (int i = 1; i <= plan_.radius; ++i) {
        const Pixel* const above = rowAt(row - i);
        const Pixel* const below = rowAt(row + i);
        const Pixel weight = splat(plan_.weight[static_cast<std::size_t>(i)]);
        for (int x = 0; x < width; ++x)
            to[x] += (above[x] + below[x]) * weight;
    }
}

// The bloom at one row of the scene, at the bloom's own pixels along it.
void SceneDeveloper::placeGlow(int row, float intensity, Desk& desk) const {
    const int width = plan_.size.width();
    const double at = (row + 0.5) / plan_.reduction() - 0.5;
    const double base = std::floor(at);
    const auto rowAt = [&](double y) {
        const double inside = std::clamp(y, 0.0, plan_.size.height() - 1.0);
        return bright_.data() + static_cast<std::ptrdiff_t>(inside) * width;
    };
    const Pixel* const a = rowAt(base);
    const Pixel* const b = rowAt(base + 1.0);
    const auto share = static_cast<float>(at - base);
    for (int x = 0; x < width; ++x) {
        // Less than rounding shows; as zero it costs nothing.
        const Pixel sum = (a[x] * splat(1.0F - share) + b[x] * splat(share)) * splat(intensity);
        desk.glow[static_cast<std::size_t>(x)] = sum[0] + sum[1] + sum[2] < 0.5F ? Pixel{} : sum;
    }
}

void SceneDeveloper::encode(int number, float intensity, Desk& desk, Row& row) const {
    const bool glows = intensity > 0.0F;
    if (glows) placeGlow(number, intensity, desk);
    const int width = light_.size.width();
    const int reduction = plan_.reduction();
    const std::uint16_t* const from =
        light_.pixels + 4 * static_cast<std::ptrdiff_t>(number) * width;
    const float* const table = encoding().data();
    const int lastCell = plan_.size.width() - 1;
    row.number = number;
    row.from = width;
    row.to = 0;
    // Between the middles of two of the bloom's pixels.
    for (int x = 0, cell = reduction > 1 ? -1 : 0; x < width; ++cell) {
        const int begin = reduction * cell + reduction / 2;
        const int end = std::min(begin + reduction, width);
        const Pixel a = glows ? desk.glow[static_cast<std::size_t>(std::max(cell, 0))] : Pixel{};
        const Pixel b =
            glows ? desk.glow[static_cast<std::size_t>(std::min(cell + 1, lastCell))] : Pixel{};
        const bool dark = isBlack(a) && (reduction == 1 || isBlack(b));
        const Pixel step = (b - a) * splat(1.0F / static_cast<float>(reduction));
        Pixel glow = reduction > 1 ? a + step * splat(static_cast<float>(x - begin) + 0.5F) : a;
        for (; x < end; ++x, glow += step) {
            const std::uint16_t* const light = from + 4 * x;
            Pixel& to = row.pixels[static_cast<std::size_t>(x)];
            if (dark && (light[0] | light[1] | light[2]) == 0) {
                to = Pixel{};
                continue;
            }
            const auto component = [&](int i) {
                return table[std::min(light[i] + static_cast<int>(glow[i]), kWhite)];
            };
            to = Pixel{component(2), component(1), component(0), 0.0F};
            row.from = std::min(row.from, x);
            row.to = x + 1;
        }
    }
}

const SceneDeveloper::Row& SceneDeveloper::encoded(int number, float intensity, Desk& desk) const {
    const int inside = std::clamp(number, 0, light_.size.height() - 1);
    Row& row = desk.rows[static_cast<std::size_t>(inside % 4)];
    if (row.number != inside) encode(inside, intensity, desk, row);
    return row;
}

void SceneDeveloper::show(int y, float intensity, Desk& desk, std::uint32_t* to) const {
    const int width = shown_.width();
    // The light's rows stand the other way up.
    const Taps& down = down_[static_cast<std::size_t>(shown_.height() - 1 - y)];
    std::array<const Row*, 4> rows{};
    int from = light_.size.width();
    int end = 0;
    for (int i = 0; i < 4; ++i) {
        rows[static_cast<std::size_t>(i)] = &encoded(down.first + i, intensity, desk);
        from = std::min(from, rows[static_cast<std::size_t>(i)]->from);
        end = std::max(end, rows[static_cast<std::size_t>(i)]->to);
    }
    if (from >= end) {
        std::fill_n(to, width, kOpaqueBlack);
        return;
    }
    Pixel* const between = desk.between.pixels.data() + kMargin;
    std::fill(between + from - kMargin, between + from, Pixel{});
    std::fill(between + end, between + end + kMargin, Pixel{});
    const Pixel* const a = rows[0]->pixels.data();
    const Pixel* const b = rows[1]->pixels.data();
    const Pixel* const c = rows[2]->pixels.data();
    const Pixel* const d = rows[3]->pixels.data();
    const std::array<Pixel, 4> weight{splat(down.weight[0]), splat(down.weight[1]),
                                      splat(down.weight[2]), splat(down.weight[3])};
    for (int x = from; x < end; ++x)
        between[x] = a[x] * weight[0] + b[x] * weight[1] + c[x] * weight[2] + d[x] * weight[3];
    if (from == 0) std::fill_n(between - kMargin, kMargin, between[0]);
    if (end == light_.size.width()) std::fill_n(between + end, kMargin, between[end - 1]);

    const float* const grain = noise().data() + kNoiseSize * (y % kNoiseSize);
    const auto pixel = [&](int x) {
        const Taps& tap = across_[static_cast<std::size_t>(x)];
        const Pixel* const at = between + tap.first;
        return at[0] * splat(tap.weight[0]) + at[1] * splat(tap.weight[1]) +
               at[2] * splat(tap.weight[2]) + at[3] * splat(tap.weight[3]) +
               splat(grain[x % kNoiseSize]);
    };
    const double stretch = static_cast<double>(width) / light_.size.width();
    const int first = std::clamp(static_cast<int>((from - 2) * stretch), 0, width);
    const int last = std::clamp(static_cast<int>(std::ceil((end + 2) * stretch)), first, width);
    std::fill_n(to, first, kOpaqueBlack);
    int x = first;
    for (; x + 4 <= last; x += 4)
        packFour(to + x, pixel(x), pixel(x + 1), pixel(x + 2), pixel(x + 3));
    std::array<std::uint32_t, 4> rest{};
    const auto restPixel = [&](int i) { return pixel(std::min(x + i, last - 1)); };
    if (x < last) {
        packFour(rest.data(), restPixel(0), restPixel(1), restPixel(2), restPixel(3));
        std::copy_n(rest.begin(), last - x, to + x);
    }
    std::fill_n(to + last, width - last, kOpaqueBlack);
}

}  // namespace platform
