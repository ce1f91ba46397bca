// SPDX-License-Identifier: MIT
#include "tests/support/RandomTree.h"

#include <QColor>
#include <algorithm>
#include <cmath>

using namespace platform;

RandomTree::RandomTree(std::uint64_t seed, QSizeF size, double scale, double clock)
    : random_(seed), size_(size), scale_(scale), clock_(clock), root_(layer(size, 0, false)) {
    root_->setFrame({QPointF(), size});
}

std::shared_ptr<GradientLayer> RandomTree::layer(const QSizeF& within, int depth, bool inMask) {
    auto made = std::make_shared<GradientLayer>();
    all_.push_back(made.get());
    place(*made, within);
    fill(*made);
    if (random_.below(3) == 0) animate(*made);
    if (random_.below(3) == 0) made->setOpacity(random_.between(0.2, 1.0));
    made->setMasksToBounds(random_.below(3) == 0);
    if (!inMask && random_.below(3) == 0)
        made->setMask(layer(made->bounds().size(), std::max(depth, 2), true));
    const std::uint32_t count = depth == 0 ? 5 : depth < 3 ? random_.below(4) : 0;
    for (std::uint32_t i = 0; i < count; ++i)
        made->addSublayer(layer(made->bounds().size(), depth + 1, inMask));
    return made;
}

void RandomTree::place(Layer& layer, const QSizeF& within) {
    const double width = within.width() * random_.between(0.2, 1.0);
    const double height = within.height() * random_.between(0.2, 1.0);
    QRectF frame(random_.between(-0.2, 0.9) * within.width(),
                 random_.between(-0.2, 0.9) * within.height(), width, height);
    // A third of the edges lie halfway between pixels, where rounding must agree.
    if (random_.below(3) == 0) {
        const auto half = [this](double v) { return (std::floor(v * scale_) + 0.5) / scale_; };
        frame = {half(frame.x()), half(frame.y()), half(width), half(height)};
    }
    layer.setFrame(frame);
}

void RandomTree::fill(GradientLayer& layer) {
    const std::uint32_t kind = random_.below(5);
    if (kind <= 1) layer.setBackgroundColor(colour());
    if (kind == 2) {
        std::vector<ColourStop> stops;
        double location = random_.between(-0.2, 0.4);
        const std::uint32_t count = 1 + random_.below(4);
        for (std::uint32_t i = 0; i < count; ++i) {
            stops.push_back({.location = location, .colour = colour()});
            location += random_.between(0.1, 0.5);
        }
        layer.setStops(stops);
        if (random_.coin())
            layer.setAxis({random_.unit(), random_.unit()}, {random_.unit(), random_.unit()});
    }
    if (kind >= 3) layer.setContents(picture(layer.bounds().size()));
}

QImage RandomTree::picture(const QSizeF& points) {
    QSize size = (points * scale_).toSize().expandedTo({1, 1});
    const bool stretched = random_.below(3) == 0;
    if (stretched) size = {1 + static_cast<int>(random_.below(9)), 1 + size.height() / 3};
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x)
            row[x] = qPremultiply(static_cast<QRgb>(random_.bits()));
    }
    return random_.below(4) == 0 ? image.convertToFormat(QImage::Format_RGBA8888) : image;
}

void RandomTree::animate(Layer& layer) {
    static constexpr KeyPath kPaths[] = {KeyPath::PositionX, KeyPath::PositionY, KeyPath::Opacity};
    KeyframeAnimation animation{.keyPath = kPaths[random_.below(3)]};
    const bool fades = animation.keyPath == KeyPath::Opacity;
    for (int i = 0; i < 5; ++i)
        animation.values.push_back(fades ? random_.unit() : random_.unit() * size_.width());
    if (random_.coin()) animation.calculationMode = CalculationMode::Discrete;
    animation.timing.duration = random_.between(0.3, 2.0);
    animation.timing.repeatCount = random_.coin() ? kForever : 2.0;
    layer.addAnimation("move", animation, clock_);
}

QColor RandomTree::colour() {
    const auto part = [this] { return static_cast<int>(random_.below(256)); };
    return {part(), part(), part(), random_.below(3) == 0 ? 255 : part()};
}

void RandomTree::change() {
    const std::uint32_t count = 1 + random_.below(3);
    for (std::uint32_t i = 0; i < count; ++i) {
        GradientLayer& layer = *all_[random_.below(static_cast<std::uint32_t>(all_.size()))];
        switch (random_.below(6)) {
            case 0:
                layer.setOpacity(random_.unit());
                break;
            case 1:
                layer.setBackgroundColor(colour());
                break;
            case 2:
                layer.setContents(picture(layer.bounds().size()));
                break;
            case 3:
                fill(layer);
                break;
            case 4:
                layer.setMasksToBounds(!layer.masksToBounds());
                break;
            default:
                layer.setPosition(layer.position() +
                                  QPointF(random_.between(-9.0, 9.0), random_.between(-9.0, 9.0)));
        }
    }
}
