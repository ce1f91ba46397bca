// SPDX-License-Identifier: MIT
#include "tests/support/ExampleTrees.h"

#include <QRgb>
#include <array>
#include <cmath>
#include <vector>

namespace platform::test {

namespace {

constexpr double kColumn = 21.0;
constexpr double kRow = 26.0;
constexpr int kStrips = 10;

QColor anyColour(RandomSource& random) {
    return QColor::fromRgbF(static_cast<float>(random.unit()), static_cast<float>(random.unit()),
                            static_cast<float>(random.unit()), static_cast<float>(random.unit()));
}

// Blocks with soft edges, one to a row of the column.
QImage strip(int rows, double scale, const QColor& colour, RandomSource& random) {
    QImage image(QSizeF(kColumn * scale, kRow * scale * rows).toSize(),
                 QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool block = (x / 5 + y / 6) % 2 == 0;
            const auto alpha = static_cast<int>(block ? 255 : random.below(60));
            image.setPixel(x, y,
                           qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha)));
        }
    }
    return image;
}

KeyframeAnimation fall(double from, double plus, int rows, double step, double offset) {
    KeyframeAnimation animation{.keyPath = KeyPath::PositionY,
                                .calculationMode = CalculationMode::Discrete};
    for (int m = 0; m <= rows; ++m)
        animation.values.push_back(from - kRow * m + plus);
    animation.timing.duration = step * rows;
    animation.timing.repeatCount = kForever;
    animation.timing.time.timeOffset = offset;
    return animation;
}

struct Column {
    std::shared_ptr<Layer> tail, head;
};

void addDrop(const Column& column, int rows, double clockTime, RandomSource& random) {
    const double height = kRow * rows;
    const int length = 8 + static_cast<int>(random.below(19));
    const double trail = kRow * length;
    const double step = random.between(0.05, 0.12);
    const int steps = rows + length + 1;
    const double offset = random.between(0.0, step * steps);
    auto gradient = std::make_shared<GradientLayer>();
    gradient->setStops({{0.0, QColor(255, 255, 255)},
                        {0.12, QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.72F)},
                        {1.0, QColor(255, 255, 255, 0)}});
    gradient->setFrame({0.0, height, kColumn, trail});
    gradient->addAnimation("fall", fall(height, trail / 2.0, steps, step, offset), clockTime);
    column.tail->mask()->addSublayer(gradient);
    auto square = std::make_shared<Layer>();
    square->setBackgroundColor(Qt::white);
    square->setFrame({0.0, height, kColumn, kRow});
    square->addAnimation("fall", fall(height, kRow / 2.0, steps, step, offset), clockTime);
    column.head->mask()->addSublayer(square);
}

std::shared_ptr<Layer> stripLayer(const QRectF& frame, const QImage& image, double scale) {
    auto layer = std::make_shared<Layer>();
    layer->setFrame(frame);
    layer->setContents(image);
    layer->setContentsScale(scale);
    auto mask = std::make_shared<Layer>();
    mask->setFrame({QPointF(0.0, 0.0), frame.size()});
    layer->setMask(mask);
    return layer;
}

std::shared_ptr<Layer> anyGradient(RandomSource& random) {
    auto gradient = std::make_shared<GradientLayer>();
    std::vector<ColourStop> stops;
    double at = random.between(-0.2, 0.4);
    const std::uint32_t count = 1 + random.below(4);
    for (std::uint32_t i = 0; i < count; ++i) {
        stops.push_back({at, anyColour(random)});
        at += random.between(0.05, 0.5);
    }
    gradient->setStops(stops);
    if (random.coin())
        gradient->setAxis({random.unit(), random.unit()}, {random.unit(), random.unit()});
    return gradient;
}

// A layer of one kind or another, somewhere within `size`.
std::shared_ptr<Layer> anyLayer(QSizeF size, double scale, RandomSource& random) {
    const std::uint32_t kind = random.below(4);
    auto layer = kind == 0 ? anyGradient(random) : std::make_shared<Layer>();
    const QSizeF own(random.between(4.0, size.width()), random.between(4.0, size.height()));
    layer->setFrame({QPointF(random.between(-0.3, 0.8) * size.width(),
                             random.between(-0.3, 0.8) * size.height()),
                     own});
    if (kind == 1) layer->setBackgroundColor(anyColour(random));
    if (kind >= 2) {
        const QSize fitting(static_cast<int>(std::round(own.width() * scale)),
                            static_cast<int>(std::round(own.height() * scale)));
        const QSize other(2 + static_cast<int>(random.below(40)),
                          2 + static_cast<int>(random.below(40)));
        layer->setContents(noise(kind == 2 ? fitting : other, random.coin(), random));
    }
    layer->setOpacity(random.coin() ? 1.0 : random.unit());
    layer->setMasksToBounds(random.below(3) == 0);
    return layer;
}

std::shared_ptr<Layer> anyMask(QSizeF size, double scale, RandomSource& random) {
    auto mask = std::make_shared<Layer>();
    mask->setFrame({QPointF(0.0, 0.0), size});
    const std::uint32_t count = 1 + random.below(4);
    for (std::uint32_t i = 0; i < count; ++i)
        mask->addSublayer(anyLayer(size, scale, random));
    return mask;
}

void addAny(Layer& parent, int depth, double scale, RandomSource& random) {
    const QSizeF size = parent.bounds().size();
    const std::uint32_t count = 1 + random.below(3);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto layer = anyLayer(size, scale, random);
        if (random.below(3) == 0) layer->setMask(anyMask(layer->bounds().size(), scale, random));
        if (depth > 0) addAny(*layer, depth - 1, scale, random);
        parent.addSublayer(layer);
    }
}

}  // namespace

QImage noise(QSize size, bool opaque, RandomSource& random) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const auto bits = static_cast<QRgb>(random.bits());
            image.setPixel(x, y, qPremultiply(opaque ? bits | 0xFF000000U : bits));
        }
    }
    return image;
}

std::shared_ptr<Layer> rainTree(QSizeF size, double scale, double clockTime, RandomSource& random) {
    auto root = std::make_shared<Layer>();
    root->setFrame({QPointF(0.0, 0.0), size});
    root->setMasksToBounds(true);
    const int rows = static_cast<int>(std::ceil(size.height() / kRow)) + 1;
    std::array<QImage, kStrips> tails, heads;
    for (QImage& image : tails)
        image = strip(rows, scale, QColor(0x22, 0xE0, 0x5A), random);
    for (QImage& image : heads)
        image = strip(rows, scale, QColor(0xE8, 0xFF, 0xEE), random);
    const int columns = static_cast<int>(size.width() / kColumn);
    const double margin = (size.width() - kColumn * columns) / 2.0;
    for (int i = 0; i < columns; ++i) {
        const QRectF frame(margin + kColumn * i, size.height() - kRow * rows, kColumn, kRow * rows);
        const std::uint32_t which = random.below(kStrips);
        const Column column{stripLayer(frame, tails.at(which), scale),
                            stripLayer(frame, heads.at(which), scale)};
        const std::uint32_t drops = 1 + random.below(3);
        for (std::uint32_t drop = 0; drop < drops; ++drop)
            addDrop(column, rows, clockTime, random);
        root->addSublayer(column.tail);
        root->addSublayer(column.head);
    }
    return root;
}

std::shared_ptr<Layer> randomTree(QSizeF size, double scale, RandomSource& random) {
    auto root = std::make_shared<Layer>();
    root->setFrame({QPointF(0.0, 0.0), size});
    root->setMasksToBounds(true);
    addAny(*root, 1, scale, random);
    return root;
}

}  // namespace platform::test
