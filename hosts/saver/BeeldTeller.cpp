// SPDX-License-Identifier: MIT
#include "hosts/saver/BeeldTeller.h"

#include <QLocale>

#include "drawing/Thema.h"
#include "platform/desktop/Window.h"

namespace brixtel {

namespace {
constexpr QSizeF kMaat(190.0, 26.0);
constexpr double kRand = 16.0;
}  // namespace

BeeldTeller::BeeldTeller(platform::MediaClock& klok, double boven)
    : View(QRectF(QPointF(kRand, boven - kRand - kMaat.height()), kMaat)),
      klok_(klok),
      sinds_(klok.now()),
      timer_(klok, {.interval = 1.0, .repeats = true}, [this] { tel(); }) {
    setWantsLayer(true);
}

void BeeldTeller::tel() {
    if (!window()) return;
    const std::uint64_t beelden = window()->statistics().frames;
    const double nu = klok_.now();
    schrijf(static_cast<double>(beelden - beelden_) / (nu - sinds_));
    beelden_ = beelden;
    sinds_ = nu;
    // Stays in its corner when the window grows.
    const double boven = superview() ? superview()->bounds().height() : kMaat.height();
    setFrame({QPointF(kRand, boven - kRand - kMaat.height()), kMaat});
}

void BeeldTeller::schrijf(double perSeconde) {
    const double schaal = window()->backingScaleFactor();
    const QString getal =
        QLocale(QLocale::Dutch, QLocale::Netherlands).toString(perSeconde, 'f', 1);
    const auto beeld = Thema::beeld(
        kMaat,
        {.schaal = schaal, .teken = [&](Tekenvlak& vlak) {
             QColor onder = Qt::black;
             onder.setAlphaF(0.7F);
             vlak.painter().fillRect(QRectF(QPointF(0, 0), kMaat), onder);
             Thema::tekst(
                 getal + QStringLiteral(" beelden/s"),
                 {.font = Thema::font(14, {.vet = true}), .kleur = Thema::groen(), .op = {8, 8}},
                 vlak);
         }});
    if (!beeld) return;
    layer()->setContentsScale(schaal);
    layer()->setContents(*beeld);
}

}  // namespace brixtel
