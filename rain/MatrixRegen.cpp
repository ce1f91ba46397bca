// SPDX-License-Identifier: MIT
#include "rain/MatrixRegen.h"

#include <algorithm>
#include <cmath>

#include "drawing/BlokCijfer.h"
#include "drawing/Thema.h"
#include "platform/time/Require.h"

namespace brixtel {

using platform::GradientLayer;
using platform::Layer;
using platform::require;

namespace {

constexpr double kSpleet = 0.5;  // points between the blocks of a digit
constexpr int kStroken = 10;
constexpr double kFlikkerTijd = 0.09;  // seconds

// The size of a cell, in sizes of its digit.
constexpr double kCelBreedte = 1.48;
constexpr double kCelHoogte = 1.26;

// The measures in which the rain over the desktop and the opaque rain differ.
struct Maten {
    double blok;              // the side of a digit's block, in points
    double vervaging;         // of the digits' shadow, in pixels
    std::uint32_t kortste;    // rows of the shortest trail
    std::uint32_t spreiding;  // the number of different lengths of a trail
};
constexpr Maten kDoorzichtig{.blok = 3.0, .vervaging = 2.5, .kortste = 6, .spreiding = 11};
constexpr Maten kDicht{.blok = 2.5, .vervaging = 2.0, .kortste = 8, .spreiding = 19};
constexpr float kGloed = 0.45F;  // the alpha of the opaque rain's shadow

// The chance that a column has one more drop: a constant part, and a part of the density.
struct Kans {
    double vast;
    double perDichtheid;
    [[nodiscard]] double bij(double dichtheid) const { return vast + perDichtheid * dichtheid; }
};
constexpr Kans kEnige{.vast = 0.25, .perDichtheid = 0.6};  // over the desktop
constexpr Kans kTweede{.vast = 0.35, .perDichtheid = 0.65};
constexpr Kans kDerde{.vast = 0.0, .perDichtheid = 0.7};

// The bend of a trail's alpha: its place as a share of the trail, and the alpha there.
constexpr double kKnik = 0.12;
constexpr double kKnikAlfa = 0.72;

// The time of a drop in one row, in seconds at speed 1.
constexpr double kVlugsteStap = 0.05;
constexpr double kTraagsteStap = 0.12;
constexpr double kLangzaamst = 0.2;  // the lowest speed
constexpr double kUitstel = 2.2;     // seconds in which all drops over the desktop begin

// The rows above and below a still picture's drops.
constexpr int kStilBoven = 4;
constexpr int kStilOnder = 2;

int alsAantal(double waarde) {
    require(std::isfinite(waarde) && waarde >= 0.0 && waarde < 1e9);
    return static_cast<int>(waarde);
}

// The digits of one strip, the first bit in the top cell.
std::vector<bool> werp(int aantal, platform::RandomSource& toeval) {
    std::vector<bool> bits(static_cast<std::size_t>(aantal));
    for (auto bit : bits)
        bit = toeval.coin();
    return bits;
}

QColor wit(double alfa) {
    return QColor::fromRgbF(1.0F, 1.0F, 1.0F, static_cast<float>(alfa));
}

// Makes a mask piece step down the strip for ever, one whole row at a time.
void val(Layer& laag, const std::vector<double>& stops, double plus, double duur, double begin,
         double verschuiving, double nu) {
    std::vector<double> waarden;
    waarden.reserve(stops.size());
    for (const double stop : stops)
        waarden.push_back(stop + plus);
    laag.addAnimation(
        "val",
        platform::KeyframeAnimation{
            .keyPath = platform::KeyPath::PositionY,
            .values = std::move(waarden),
            .keyTimes = {},
            .calculationMode = platform::CalculationMode::Discrete,
            .timing = {.time = {.beginTime = begin, .timeOffset = verschuiving, .speed = 1.0},
                       .duration = duur,
                       .repeatCount = platform::kForever,
                       .removedOnCompletion = false}},
        nu);
}

}  // namespace

// The measures of one rain, in points, for its construction.
struct MatrixRegen::Bouw {
    const MatrixRegenOpties& opties;
    const Maten& maten = opties.doorzichtig ? kDoorzichtig : kDicht;
    QSizeF glief = BlokCijfer::maat({.blok = maten.blok, .spleet = kSpleet});
    double kolomBreedte = std::round(glief.width() * kCelBreedte);
    double rijHoogte = std::round(glief.height() * kCelHoogte);
    int rijen = alsAantal(std::ceil(opties.maat.height() / rijHoogte) + 1.0);
    double strookHoogte = rijHoogte * rijen;
    double nu = 0.0;

    void strook(Tekenvlak& vlak, const std::vector<bool>& bits, const QColor& kleur) const {
        QColor schaduw = opties.doorzichtig ? QColor(Qt::black) : Thema::cijfer();
        if (!opties.doorzichtig) schaduw.setAlphaF(kGloed);
        vlak.zetSchaduw(
            {.verschuiving = {0.0, 0.0}, .vervaging = maten.vervaging, .kleur = schaduw});
        const double x = std::round(kolomBreedte - glief.width()) * 0.5;
        const double y = std::round(rijHoogte - glief.height()) * 0.5;
        for (int k = 1; k <= rijen; ++k) {
            BlokCijfer::teken(bits[static_cast<std::size_t>(k - 1)],
                              {.linksonder = {x, y + (strookHoogte - k * rijHoogte)},
                               .blok = maten.blok,
                               .spleet = kSpleet,
                               .kleur = kleur},
                              vlak);
        }
    }

    // A random number of drops for a column.
    int druppels(platform::RandomSource& toeval) const {
        const double r1 = toeval.unit();
        int aantal = 0;
        // Density 0 gives the fewest drops, without random numbers.
        const bool leeg = opties.dichtheid <= 0.0;
        if (opties.doorzichtig) {
            aantal = !leeg && r1 < kEnige.bij(opties.dichtheid) ? 1 : 0;
        } else {
            const double r2 = toeval.unit();
            aantal = (!leeg && r1 < kTweede.bij(opties.dichtheid) ? 2 : 1) +
                     (r2 < kDerde.bij(opties.dichtheid) ? 1 : 0);
        }
        return opties.stil ? std::max(aantal, 1) : aantal;
    }
};

MatrixRegen::MatrixRegen(const MatrixRegenOpties& opties, platform::MediaClock& klok,
                         platform::RandomSource& toeval)
    : klok_(klok), toeval_(toeval), laag_(std::make_shared<Layer>()) {
    Bouw bouw{.opties = opties};
    laag_->setFrame({QPointF(0.0, 0.0), opties.maat});
    laag_->setMasksToBounds(true);
    bouwStroken(bouw);
    if (stroken_.empty()) return;
    bouw.nu = klok_.now();
    bouwKolommen(bouw);
    if (!opties.stil)
        flikker_ = platform::Timer(klok_, {.interval = kFlikkerTijd, .repeats = true},
                                   [this] { knipper(); });
}

void MatrixRegen::bouwStroken(const Bouw& bouw) {
    const QSizeF maat(bouw.kolomBreedte, bouw.strookHoogte);
    for (int i = 0; i < kStroken; ++i) {
        const std::vector<bool> bits = werp(bouw.rijen, toeval_);
        const auto teken = [&](const QColor& kleur) {
            return Thema::beeld(maat, {.schaal = bouw.opties.schaal, .teken = [&](Tekenvlak& vlak) {
                                           bouw.strook(vlak, bits, kleur);
                                       }});
        };
        const auto gewoon = teken(Thema::cijfer());
        const auto fel = teken(Thema::cijferFel());
        if (!gewoon || !fel) continue;
        stroken_.push_back(*gewoon);
        kopStroken_.push_back(*fel);
    }
}

void MatrixRegen::bouwKolommen(const Bouw& bouw) {
    const double breed = bouw.opties.maat.width();
    require(std::isfinite(breed));
    const int aantal = std::max(1, alsAantal(std::max(0.0, breed / bouw.kolomBreedte)));
    const double marge = (breed - bouw.kolomBreedte * aantal) * 0.5;
    kolommen_.reserve(static_cast<std::size_t>(aantal));
    for (int i = 0; i < aantal; ++i)
        kolommen_.push_back(bouwKolom(bouw, marge + bouw.kolomBreedte * i));
}

MatrixRegen::Kolom MatrixRegen::bouwKolom(const Bouw& bouw, double x) {
    const std::size_t s = toeval_.below(static_cast<std::uint32_t>(stroken_.size()));
    const QRectF vlak(x, bouw.opties.maat.height() - bouw.strookHoogte, bouw.kolomBreedte,
                      bouw.strookHoogte);
    const auto maak = [&](const QImage& strook) {
        auto laag = std::make_shared<Layer>();
        laag->setFrame(vlak);
        laag->setContents(strook);
        laag->setContentsScale(bouw.opties.schaal);
        auto masker = std::make_shared<Layer>();
        masker->setFrame(laag->bounds());
        laag->setMask(std::move(masker));
        return laag;
    };
    Kolom kolom{.staart = maak(stroken_[s]), .kop = maak(kopStroken_[s])};
    for (int n = bouw.druppels(toeval_); n > 0; --n)
        voegDruppel(bouw, kolom);
    laag_->addSublayer(kolom.staart);
    laag_->addSublayer(kolom.kop);
    return kolom;
}

void MatrixRegen::voegDruppel(const Bouw& bouw, const Kolom& kolom) {
    const int lengte = static_cast<int>(bouw.maten.kortste + toeval_.below(bouw.maten.spreiding));
    const double spoor = bouw.rijHoogte * lengte;

    auto staart = std::make_shared<GradientLayer>();
    staart->setStops({{0.0, wit(1.0)}, {kKnik, wit(kKnikAlfa)}, {1.0, wit(0.0)}});
    staart->setFrame({0.0, bouw.strookHoogte, bouw.kolomBreedte, spoor});
    kolom.staart->mask()->addSublayer(staart);

    auto kop = std::make_shared<Layer>();
    kop->setBackgroundColor(wit(1.0));
    kop->setFrame({0.0, bouw.strookHoogte, bouw.kolomBreedte, bouw.rijHoogte});
    kolom.kop->mask()->addSublayer(kop);

    std::vector<double> stops;
    for (int m = 0; m <= bouw.rijen + lengte + 1; ++m)
        stops.push_back(bouw.strookHoogte - bouw.rijHoogte * m);

    if (bouw.opties.stil) {
        constexpr int kRand = kStilBoven + kStilOnder;
        require(bouw.rijen > kRand);
        const auto idx = kStilBoven + toeval_.below(static_cast<std::uint32_t>(bouw.rijen - kRand));
        staart->setPosition({staart->position().x(), stops[idx] + spoor / 2.0});
        kop->setPosition({kop->position().x(), stops[idx] + bouw.rijHoogte / 2.0});
        return;
    }
    const double stap = toeval_.between(kVlugsteStap, kTraagsteStap);
    const double duur =
        stap * (bouw.rijen + lengte + 1) / std::max(bouw.opties.snelheid, kLangzaamst);
    // Opaque rain fills the screen at once; over the desktop, drops begin to
    // fall one by one.
    const double begin =
        bouw.opties.doorzichtig ? bouw.nu + toeval_.between(0.0, kUitstel) : bouw.nu;
    const double verschuiving = bouw.opties.doorzichtig ? 0.0 : toeval_.between(0.0, duur);
    val(*staart, stops, spoor / 2.0, duur, begin, verschuiving, bouw.nu);
    val(*kop, stops, bouw.rijHoogte / 2.0, duur, begin, verschuiving, bouw.nu);
}

void MatrixRegen::knipper() {
    if (kolommen_.empty()) return;
    const auto& kolom = kolommen_[toeval_.below(static_cast<std::uint32_t>(kolommen_.size()))];
    const auto t = toeval_.below(static_cast<std::uint32_t>(stroken_.size()));
    kolom.staart->setContents(stroken_[t]);
    kolom.kop->setContents(kopStroken_[t]);
}

void MatrixRegen::stop() {
    flikker_.invalidate();
}

void MatrixRegen::zetTempo(float tempo) {
    const double t = klok_.now();
    const double lokaal = laag_->localTime(t);
    laag_->setTime({.beginTime = t, .timeOffset = lokaal, .speed = tempo});
}

}  // namespace brixtel
