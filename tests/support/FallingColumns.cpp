// SPDX-License-Identifier: MIT
#include "tests/support/FallingColumns.h"

#include <QColor>
#include <cmath>

using namespace platform;

namespace {

constexpr int kStrips = 10;

KeyframeAnimation fall(double top, int rowHeight, int stops, double half,
                       const FallingColumns::Drop& drop) {
    KeyframeAnimation animation{
        .keyPath = KeyPath::PositionY,
        .calculationMode = CalculationMode::Discrete,
        .timing = {.time = {.beginTime = drop.begin, .timeOffset = drop.offset},
                   .duration = drop.rowSeconds * stops,
                   .repeatCount = kForever,
                   .removedOnCompletion = false}};
    for (int i = 0; i < stops; ++i)
        animation.values.push_back(top - rowHeight * i + half);
    return animation;
}

}  // namespace

FallingColumns::FallingColumns(const Options& options)
    : options_(options),
      random_(options.seed),
      rows_(static_cast<int>(std::ceil(options.size.height() / options.rowHeight)) + 1),
      stripHeight_(rows_ * options.rowHeight) {
    root_->setFrame({QPointF(), options.size});
    root_->setMasksToBounds(true);
    for (int i = 0; i < kStrips; ++i) {
        tails_.push_back(strip(QColor(20, 200, 80)));
        heads_.push_back(strip(QColor(200, 255, 220)));
    }
    const int count = static_cast<int>(options.size.width() / options.columnWidth);
    const double margin = (options.size.width() - count * options.columnWidth) / 2.0;
    for (int i = 0; i < count; ++i) {
        Column& column = columns_.emplace_back();
        const QRectF frame(margin + i * options.columnWidth, options.size.height() - stripHeight_,
                           options.columnWidth, stripHeight_);
        for (auto* layer : {&column.tail, &column.head}) {
            *layer = std::make_shared<Layer>();
            (*layer)->setFrame(frame);
            auto mask = std::make_shared<Layer>();
            mask->setFrame({QPointF(), frame.size()});
            (*layer)->setMask(mask);
            root_->addSublayer(*layer);
        }
        swapContents(i);
    }
}

// Cells with a solid block and a soft edge, like glowing digits.
QImage FallingColumns::strip(const QColor& colour) {
    const double scale = options_.scale;
    const QSize size = (QSizeF(options_.columnWidth, stripHeight_) * scale).toSize();
    const int cell = static_cast<int>(options_.rowHeight * scale);
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        auto* const row = reinterpret_cast<QRgb*>(image.scanLine(y));
        const bool edge = y % cell < 3 || y % cell >= cell - 3;
        for (int x = 0; x < size.width(); ++x) {
            const bool block = !edge && random_.coin();
            const int alpha = block ? 255 : static_cast<int>(random_.below(edge ? 30 : 120));
            row[x] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha));
        }
    }
    return image;
}

void FallingColumns::addDrop(int column, const Drop& drop) {
    const Column& target = columns_[static_cast<std::size_t>(column)];
    const double trail = drop.length * options_.rowHeight;
    const int stops = rows_ + drop.length + 2;

    auto tail = std::make_shared<GradientLayer>();
    tail->setStops({{.location = 0.0, .colour = Qt::white},
                    {.location = 0.12, .colour = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.72F)},
                    {.location = 1.0, .colour = QColor::fromRgbF(1.0F, 1.0F, 1.0F, 0.0F)}});
    tail->setFrame({0.0, stripHeight_, static_cast<double>(options_.columnWidth), trail});
    tail->addAnimation("fall", fall(stripHeight_, options_.rowHeight, stops, trail / 2.0, drop),
                       0.0);
    target.tail->mask()->addSublayer(tail);

    auto head = std::make_shared<Layer>();
    head->setBackgroundColor(Qt::white);
    head->setFrame({0.0, stripHeight_, static_cast<double>(options_.columnWidth),
                    static_cast<double>(options_.rowHeight)});
    head->addAnimation(
        "fall", fall(stripHeight_, options_.rowHeight, stops, options_.rowHeight / 2.0, drop), 0.0);
    target.head->mask()->addSublayer(head);
}

void FallingColumns::fill(double clock) {
    for (int i = 0; i < columnCount(); ++i) {
        const int drops = (random_.unit() < 0.8 ? 2 : 1) + (random_.unit() < 0.5 ? 1 : 0);
        for (int k = 0; k < drops; ++k) {
            const int length = 8 + static_cast<int>(random_.below(19));
            const double seconds = random_.between(0.05, 0.12);
            addDrop(i, {.length = length,
                        .rowSeconds = seconds,
                        .begin = clock,
                        .offset = random_.between(0.0, seconds * (rows_ + length + 2))});
        }
    }
}

void FallingColumns::swapContents(int column) {
    Column& target = columns_[static_cast<std::size_t>(column)];
    target.strip = (target.strip + 1 + random_.below(kStrips - 1)) % kStrips;
    target.tail->setContents(tails_[target.strip]);
    target.head->setContents(heads_[target.strip]);
}

void FallingColumns::show(double clock, DisplayList& list) {
    DisplayListBuilder(list, clock).add(*root_, {}, {QPointF(), options_.size});
}

DisplayList FallingColumns::shown(double clock) {
    DisplayList list;
    show(clock, list);
    return list;
}
