// SPDX-License-Identifier: MIT
#include "hosts/saver/BeeldTeller.h"

#include <QLocale>

#include "drawing/Thema.h"
#include "platform/time/ProcessUsage.h"
#include "platform/window/Window.h"

namespace brixtel {

namespace {
// The size holds three digits and a tenth; a larger one would hide the picture.
constexpr QSizeF kMaat(144.0, 46.0);
constexpr double kRegel = 18.0;
constexpr double kRand = 16.0;
}  // namespace

BeeldTeller::BeeldTeller(platform::MediaClock& klok, double boven)
    : View(QRectF(QPointF(kRand, boven - kRand - kMaat.height()), kMaat)),
      klok_(klok),
      sinds_(klok.now()),
      cpu_(platform::processUsage().cpuSeconds),
      timer_(klok, {.interval = 1.0, .repeats = true}, [this] { tel(); }) {
    setWantsLayer(true);
}

void BeeldTeller::tel() {
    if (!window()) return;
    const std::uint64_t beelden = window()->statistics().frames;
    const double nu = klok_.now();
    const double cpu = platform::processUsage().cpuSeconds;
    const QLocale nederlands(QLocale::Dutch, QLocale::Netherlands);
    const auto perSeconde = [&](double aantal, int cijfers) {
        return nederlands.toString(aantal / (nu - sinds_), 'f', cijfers);
    };
    regels_ = {
        perSeconde(static_cast<double>(beelden - beelden_), 1) + QStringLiteral(" beelden/s"),
        QStringLiteral("belasting ") + perSeconde(100.0 * (cpu - cpu_), 0) + u'%'};
    schrijf();
    beelden_ = beelden;
    cpu_ = cpu;
    sinds_ = nu;
    // The view stays in its corner when the window grows.
    const double boven = superview() ? superview()->bounds().height() : kMaat.height();
    setFrame({QPointF(kRand, boven - kRand - kMaat.height()), kMaat});
}

void BeeldTeller::schrijf() {
    const double schaal = window()->backingScaleFactor();
    const auto beeld = Thema::beeld(
        kMaat, {.schaal = schaal, .teken = [&](Tekenvlak& vlak) {
                    QColor onder = Qt::black;
                    onder.setAlphaF(0.85F);
                    vlak.painter().fillRect(QRectF(QPointF(0, 0), kMaat), onder);
                    for (std::size_t i = 0; i < regels_.size(); ++i)
                        Thema::tekst(
                            regels_[i],
                            {.font = Thema::font(14, {.vet = i == 0}),
                             .kleur = i == 0 ? Thema::groen() : Thema::middel(),
                             .op = {8, kMaat.height() - kRegel * (static_cast<double>(i) + 1)}},
                            vlak);
                }});
    if (!beeld) return;
    layer()->setContentsScale(schaal);
    layer()->setContents(*beeld);
}

}  // namespace brixtel
