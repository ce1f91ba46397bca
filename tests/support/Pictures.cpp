// SPDX-License-Identifier: MIT
#include "tests/support/Pictures.h"

#include <QDir>
#include <QRgb>
#include <algorithm>
#include <array>
#include <cstdlib>

#include "tests/support/Paden.h"

namespace platform::test {

namespace {

constexpr int kMagnified = 10;

std::array<int, 4> parts(QRgb pixel) {
    return {qRed(pixel), qGreen(pixel), qBlue(pixel), qAlpha(pixel)};
}

std::array<int, 4> apart(QRgb a, QRgb b) {
    std::array<int, 4> result = parts(a);
    const std::array<int, 4> other = parts(b);
    for (std::size_t i = 0; i < result.size(); ++i)
        result.at(i) = std::abs(result.at(i) - other.at(i));
    return result;
}

QImage premultiplied(const QImage& image) {
    return image.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

const QRgb* line(const QImage& image, int y) {
    return reinterpret_cast<const QRgb*>(image.constScanLine(y));
}

QImage differencePicture(const QImage& a, const QImage& b) {
    QImage result(a.size(), QImage::Format_RGB32);
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const auto d = apart(line(a, y)[x], line(b, y)[x]);
            const auto shown = [&](std::size_t i) {
                return std::min(255, kMagnified * std::max(d.at(i), d[3]));
            };
            result.setPixel(x, y, qRgb(shown(0), shown(1), shown(2)));
        }
    }
    return result;
}

}  // namespace

PictureDifference difference(const QImage& first, const QImage& second) {
    const QImage a = premultiplied(first), b = premultiplied(second);
    PictureDifference result;
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            for (const int d : apart(line(a, y)[x], line(b, y)[x])) {
                sum += d;
                if (d <= result.largest) continue;
                result.largest = d;
                result.where = {x, y};
            }
        }
    }
    result.mean = sum / (4.0 * a.width() * a.height());
    return result;
}

testing::AssertionResult agree(const QImage& actual, const QImage& expected,
                               const std::string& name, PictureLimits limits) {
    if (actual.isNull() || actual.size() != expected.size())
        return testing::AssertionFailure()
               << name << ": " << actual.width() << " x " << actual.height() << " instead of "
               << expected.width() << " x " << expected.height();
    const PictureDifference d = difference(actual, expected);
    if (d.largest <= limits.largest && d.mean <= limits.mean) return testing::AssertionSuccess();
    const QDir folder(QStringLiteral(BRIXTEL_BUILD_DIR "/pictures"));
    folder.mkpath(QStringLiteral("."));
    const auto save = [&](const QImage& image, const char* what) {
        image.save(folder.filePath(QString::fromStdString(name + "-" + what + ".png")));
    };
    save(actual, "actual");
    save(expected, "expected");
    save(differencePicture(premultiplied(actual), premultiplied(expected)), "difference");
    return testing::AssertionFailure()
           << name << ": largest difference " << d.largest << " (at most " << limits.largest
           << ") at " << d.where.x() << ", " << d.where.y() << "; mean " << d.mean << " (at most "
           << limits.mean << "); see " << folder.path().toStdString();
}

QImage noise(QSize size, RandomSource& random) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, static_cast<QRgb>(random.bits()) | 0xFF000000U);
    }
    return image;
}

}  // namespace platform::test
