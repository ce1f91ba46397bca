// SPDX-License-Identifier: MIT
#include "tests/support/PictureQuality.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "platform/scene/Shading.h"

namespace platform::test {

namespace {

std::array<double, 256> makeDecoding() {
    std::array<double, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i)
        table[i] = srgbDecode(static_cast<double>(i) / 255.0);
    return table;
}

}  // namespace

QImage averagedDown(const QImage& large, int times) {
    static const std::array<double, 256> kDecoding = makeDecoding();
    QImage result(large.width() / times, large.height() / times, QImage::Format_RGB32);
    for (int y = 0; y < result.height(); ++y) {
        for (int x = 0; x < result.width(); ++x) {
            std::array<double, 3> sum{};
            for (int i = 0; i < times * times; ++i) {
                const QRgb pixel = large.pixel(x * times + i % times, y * times + i / times);
                sum[0] += kDecoding[static_cast<std::size_t>(qRed(pixel))];
                sum[1] += kDecoding[static_cast<std::size_t>(qGreen(pixel))];
                sum[2] += kDecoding[static_cast<std::size_t>(qBlue(pixel))];
            }
            const auto encoded = [&](double light) {
                return static_cast<int>(std::lround(255.0 * srgbEncode(light / (times * times))));
            };
            result.setPixel(x, y, qRgb(encoded(sum[0]), encoded(sum[1]), encoded(sum[2])));
        }
    }
    return result;
}

double psnr(const QImage& a, const QImage& b) {
    if (a.size() != b.size() || a.isNull()) return 0.0;
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            for (const int gap : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)})
                sum += static_cast<double>(gap) * gap;
        }
    }
    const double mean = sum / (3.0 * a.width() * a.height());
    return mean > 0.0 ? std::min(99.0, 10.0 * std::log10(255.0 * 255.0 / mean)) : 99.0;
}

}  // namespace platform::test
