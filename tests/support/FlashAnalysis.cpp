// SPDX-License-Identifier: MIT
#include "tests/support/FlashAnalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr float kStep = 0.1F;
constexpr float kDarkest = 0.8F;
constexpr float kRedStep = 20.0F;
constexpr float kRedScale = 320.0F;
constexpr float kSaturated = 0.8F;
constexpr int kFields = 5;  // along each axis, each a third wide, half over one another
constexpr double kShare = 0.25;
// Changes within this time are one: half of a flash at four a second is longer.
constexpr double kTogether = 0.1;

// sRGB to linear light.
const std::array<float, 256>& linear() {
    static const std::array<float, 256> table = [] {
        std::array<float, 256> values{};
        for (std::size_t i = 0; i < values.size(); ++i) {
            const double v = static_cast<double>(i) / 255.0;
            values.at(i) =
                static_cast<float>(v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4));
        }
        return values;
    }();
    return table;
}

struct Light {
    float red, green, blue;
    explicit Light(QRgb pixel)
        : red(linear()[static_cast<std::size_t>(qRed(pixel))]),
          green(linear()[static_cast<std::size_t>(qGreen(pixel))]),
          blue(linear()[static_cast<std::size_t>(qBlue(pixel))]) {}
    [[nodiscard]] float luminance() const {
        return 0.2126F * red + 0.7152F * green + 0.0722F * blue;
    }
    // 0 unless it is a saturated red.
    [[nodiscard]] float saturatedRed() const {
        const float sum = red + green + blue;
        if (sum <= 0.0F || red / sum < kSaturated) return 0.0F;
        return std::max(0.0F, red - green - blue) * kRedScale;
    }
};

}  // namespace

double FlashAnalysis::luminance(QRgb pixel) {
    return Light(pixel).luminance();
}

void FlashAnalysis::add(const QImage& picture, double time) {
    const bool first = size_.isEmpty();
    if (first) {
        size_ = picture.size();
        for (Kind* kind : {&general_, &red_}) {
            kind->pixels.resize(static_cast<std::size_t>(size_.width() * size_.height()));
            kind->fields.resize(kFields * kFields);
        }
    }
    double sum = 0.0;
    std::size_t at = 0;
    for (int y = 0; y < size_.height(); ++y)
        for (int x = 0; x < size_.width(); ++x, ++at) {
            const Light light(picture.pixel(x, y));
            sum += light.luminance();
            if (first) {
                general_.pixels[at].extreme = light.luminance();
                red_.pixels[at].extreme = light.saturatedRed();
                continue;
            }
            follow(general_, at, light.luminance(), kStep, kDarkest, time);
            follow(red_, at, light.saturatedRed(), kRedStep, std::numeric_limits<float>::max(),
                   time);
        }
    mean_ = sum / static_cast<double>(general_.pixels.size());
    count(general_, time);
    count(red_, time);
}

void FlashAnalysis::follow(Kind& kind, std::size_t pixel, float value, float step, float darkest,
                           double time) {
    Pixel& state = kind.pixels[pixel];
    const float change = value - state.extreme;
    const int direction = change > 0.0F ? 1 : -1;
    if (direction == state.direction) {
        state.extreme = value;
        return;
    }
    if (std::abs(change) < step || std::min(value, state.extreme) >= darkest) return;
    state = {.extreme = value, .direction = direction, .changed = time};
}

void FlashAnalysis::count(Kind& kind, double time) {
    const int width = std::max(1, size_.width() / 3);
    const int height = std::max(1, size_.height() / 3);
    for (int f = 0; f < kFields * kFields; ++f) {
        const int left = (size_.width() - width) * (f % kFields) / (kFields - 1);
        const int top = (size_.height() - height) * (f / kFields) / (kFields - 1);
        std::array<int, 2> together{};  // darker, lighter
        for (int y = top; y < top + height; ++y)
            for (int x = left; x < left + width; ++x) {
                const Pixel& pixel = kind.pixels[static_cast<std::size_t>(y * size_.width() + x)];
                if (pixel.direction != 0 && time - pixel.changed < kTogether)
                    ++together.at(pixel.direction > 0 ? 1 : 0);
            }
        Field& field = kind.fields[static_cast<std::size_t>(f)];
        for (const int direction : {-1, 1}) {
            if (together.at(direction > 0 ? 1 : 0) < kShare * width * height) continue;
            if (field.direction == direction) continue;
            field.direction = direction;
            field.changes.push_back(time);
        }
        std::erase_if(field.changes, [&](double change) { return change <= time - 1.0; });
        kind.most = std::max(kind.most, static_cast<int>(field.changes.size()) / 2);
    }
}
