// SPDX-License-Identifier: MIT
#include "platform/render/cpu/scene/SpritePicture.h"

#include <QColor>
#include <algorithm>
#include <cmath>

#include "platform/render/cpu/LinearPixels.h"
#include "platform/scene/Shading.h"

namespace platform {

namespace {

constexpr float kWhole = 65535.0F;
// The steps of 65535 that rounding may move one colour by.
constexpr float kSameColour = 24.0F;

struct Texels {
    std::vector<std::uint16_t> pixels;
    int width = 0;
    int height = 0;
    [[nodiscard]] const std::uint16_t* at(int x, int y) const {
        return &pixels[4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                            static_cast<std::size_t>(x))];
    }
};

// The brightest texel: the picture's colour, if the picture has only one.
glm::vec4 brightest(const Texels& texels) {
    glm::vec4 most(0.0F);
    float sum = -1.0F;
    for (std::size_t i = 0; i < texels.pixels.size(); i += 4) {
        const glm::vec4 texel(texels.pixels[i], texels.pixels[i + 1], texels.pixels[i + 2],
                              texels.pixels[i + 3]);
        const float all = texel.r + texel.g + texel.b + texel.a;
        if (all <= sum) continue;
        sum = all;
        most = texel;
    }
    return most;
}

std::size_t leading(const glm::vec4& colour) {
    std::size_t k = 3;
    for (std::size_t i = 0; i < 3; ++i)
        if (colour[static_cast<int>(i)] > colour[static_cast<int>(k)]) k = i;
    return k;
}

bool isOneColour(const Texels& texels, const glm::vec4& colour) {
    const std::size_t lead = leading(colour);
    const float whole = colour[static_cast<int>(lead)];
    if (whole <= 0.0F) return true;
    for (std::size_t i = 0; i < texels.pixels.size(); i += 4) {
        const float share = texels.pixels[i + lead] / whole;
        for (std::size_t k = 0; k < 4; ++k)
            if (std::abs(share * colour[static_cast<int>(k)] - texels.pixels[i + k]) > kSameColour)
                return false;
    }
    return true;
}

// Whether the picture is one colour behind a stencil: every texel is that colour at the texel's
// alpha, within a step of 255. The rounding of faint texels alone makes their colours differ.
bool isStencil(const QImage& picture, const QColor& colour) {
    constexpr int kStep = 1;
    const QImage texels = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto isNear = [](int part, int whole, int alpha) {
        return std::abs(255 * part - whole * alpha) <= 255 * kStep;
    };
    for (int y = 0; y < texels.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(texels.constScanLine(y));
        for (int x = 0; x < texels.width(); ++x) {
            const int alpha = qAlpha(row[x]);
            if (!isNear(qRed(row[x]), colour.red(), alpha) ||
                !isNear(qGreen(row[x]), colour.green(), alpha) ||
                !isNear(qBlue(row[x]), colour.blue(), alpha))
                return false;
        }
    }
    return true;
}

// The colour of the picture's most opaque texel.
QColor mostOpaque(const QImage& picture) {
    const QImage texels = picture.convertToFormat(QImage::Format_ARGB32);
    QRgb most = 0;
    for (int y = 0; y < texels.height(); ++y) {
        const auto* const row = reinterpret_cast<const QRgb*>(texels.constScanLine(y));
        for (int x = 0; x < texels.width(); ++x)
            if (qAlpha(row[x]) > qAlpha(most)) most = row[x];
    }
    return QColor::fromRgb(most);
}

// Gives every texel the same colour, and keeps its alpha.
void dye(Texels& texels, const glm::vec3& colour) {
    for (std::size_t i = 0; i < texels.pixels.size(); i += 4)
        for (std::size_t k = 0; k < 3; ++k)
            texels.pixels[i + k] = static_cast<std::uint16_t>(
                colour[static_cast<int>(k)] * texels.pixels[i + 3] + 0.5F);
}

// The texels of a picture as it is shown.
Texels texelsOf(const QImage& picture, bool additive) {
    Texels texels{linearPixels(picture), picture.width(), picture.height()};
    if (const auto colour = stencilColour(picture)) dye(texels, *colour);
    for (std::size_t i = 3; additive && i < texels.pixels.size(); i += 4)
        texels.pixels[i] = 0;
    return texels;
}

// The part of texels of a side of `count` that lies in one of `fewer` equal stretches.
struct Stretch {
    double from = 0.0;
    double to = 0.0;
    Stretch(int number, int count, int fewer)
        : from(static_cast<double>(number) * count / fewer),
          to(static_cast<double>(number + 1) * count / fewer) {}
    template <typename Add>
    void each(const Add& add) const {
        for (int i = static_cast<int>(from); i < to; ++i)
            add(i, (std::min(to, i + 1.0) - std::max(from, static_cast<double>(i))) / (to - from));
    }
};

}  // namespace

std::optional<glm::vec3> stencilColour(const QImage& picture) {
    if (!picture.hasAlphaChannel()) return std::nullopt;
    const QColor opaque = mostOpaque(picture);
    if (!isStencil(picture, opaque)) return std::nullopt;
    return glm::vec3(linearColour(opaque));
}

bool SpritePicture::isEmpty(double left, double top, double right, double bottom) const {
    // Interpolation shows a texel half a texel beyond its own area, and all of a texel's light is
    // in the block of the texel's first corner.
    constexpr double kBeyond = 1.5;
    const auto block = [](double at, int side) {
        return static_cast<int>(std::clamp(std::floor(at * kBlocks / side), 0.0, kBlocks - 1.0));
    };
    for (int y = block(top - kBeyond, height); y <= block(bottom + kBeyond, height); ++y)
        for (int x = block(left - kBeyond, width); x <= block(right + kBeyond, width); ++x)
            if (filled_[static_cast<std::size_t>(y * kBlocks + x)]) return false;
    return true;
}

SpritePicture::SpritePicture(const QImage& picture, bool additive) {
    const Texels texels = texelsOf(picture, additive);
    width = texels.width;
    height = texels.height;
    const glm::vec4 most = brightest(texels);
    hasOneColour = isOneColour(texels, most);
    channels = hasOneColour ? 1 : 4;
    if (hasOneColour) colour = most / kWhole;
    filled_.assign(static_cast<std::size_t>(kBlocks) * kBlocks, 0);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint16_t* const texel = texels.at(x, y);
            if ((texel[0] | texel[1] | texel[2] | texel[3]) == 0) continue;
            filled_[static_cast<std::size_t>(y * kBlocks / height * kBlocks +
                                             x * kBlocks / width)] = 1;
        }
    findRuns([&](int a, int b) {
        return std::equal(texels.at(0, a), texels.at(0, a) + 4 * width, texels.at(0, b));
    });
    const std::size_t lead = leading(most);
    const float whole = hasOneColour ? std::max(1.0F, most[static_cast<int>(lead)]) : kWhole;
    fillRuns([&](std::size_t channel, int x, int y) {
        return texels.at(x, y)[hasOneColour ? lead : channel] / whole;
    });
}

SpritePicture::SpritePicture(const SpritePicture& whole, Half)
    : width(whole.width / 2),
      height(whole.height / 2),
      hasOneColour(whole.hasOneColour),
      colour(whole.colour),
      channels(whole.channels),
      filled_(whole.filled_) {
    const std::size_t plane = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    std::vector<float> texels(channels * plane, 0.0F);
    const auto at = [&](std::size_t channel, int x, int y) -> float& {
        return texels[channel * plane +
                      static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                      static_cast<std::size_t>(x)];
    };
    for (std::size_t k = 0; k < channels; ++k)
        for (int y = 0; y < height; ++y)
            Stretch(y, whole.height, height).each([&](int row, double down) {
                const float* const line =
                    whole.values(k, whole.runOf[static_cast<std::size_t>(row)]) + 1;
                for (int x = 0; x < width; ++x)
                    Stretch(x, whole.width, width).each([&](int column, double along) {
                        at(k, x, y) += static_cast<float>(down * along) * line[column];
                    });
            });
    findRuns([&](int a, int b) {
        for (std::size_t k = 0; k < channels; ++k)
            if (!std::equal(&at(k, 0, a), &at(k, 0, a) + width, &at(k, 0, b))) return false;
        return true;
    });
    fillRuns(at);
}

const SpritePicture& SpritePicture::forSize(glm::dvec2 size) {
    // Texels a pixel that an average over a pixel needs, and texels of the smallest half.
    constexpr double kEnough = 6.0;
    constexpr int kFewest = 4;
    if (!hasManyRuns() || width < 2 * kFewest || height < 2 * kFewest ||
        !(width >= 2.0 * kEnough * std::abs(size.x) && height >= 2.0 * kEnough * std::abs(size.y)))
        return *this;
    if (!half_) half_.reset(new SpritePicture(*this, Half{}));
    return half_->forSize(size);
}

// Sorts the rows into runs.
template <typename Same>
void SpritePicture::findRuns(const Same& isSame) {
    // A vector that begins at any node may reach beyond the last.
    stride = (nodes() + 31) / 16 * 16;
    for (int y = 0; y < height; ++y) {
        if (y == 0 || !isSame(y - 1, y)) ++runs;
        runOf.push_back(runs - 1);
    }
    data.assign(channels * static_cast<std::size_t>(runs) * 2 * static_cast<std::size_t>(stride),
                0.0F);
    runIsEmpty.assign(static_cast<std::size_t>(runs), true);
}

// Stores the texels of each run, and their integral.
template <typename Value>
void SpritePicture::fillRuns(const Value& valueAt) {
    for (int y = 0; y < height; ++y) {
        const int run = runOf[static_cast<std::size_t>(y)];
        if (y > 0 && run == runOf[static_cast<std::size_t>(y - 1)]) continue;
        for (std::size_t k = 0; k < channels; ++k) {
            float* const value = const_cast<float*>(values(k, run));
            float* const integral = value + stride;
            double sum = 0.0;
            for (int i = 0; i < nodes(); ++i) {
                value[i] = valueAt(k, std::clamp(i - 1, 0, width - 1), y);
                if (i > 0) sum += 0.5 * (static_cast<double>(value[i - 1]) + value[i]);
                integral[i] = static_cast<float>(sum);
                if (value[i] > 0.0F) runIsEmpty[static_cast<std::size_t>(run)] = false;
            }
        }
    }
}

}  // namespace platform
