// SPDX-License-Identifier: MIT
#include "drawing/Tekenvlak.h"

#include <algorithm>
#include <cmath>

namespace brixtel {

namespace {

// How much of the pixel [i, i + 1) lies within [laag, hoog).
float overlap(double laag, double hoog, int i) {
    return static_cast<float>(
        std::clamp(std::min(hoog, i + 1.0) - std::max(laag, i * 1.0), 0.0, 1.0));
}

QRgb over(QRgb onder, float r, float g, float b, float a) {
    const float rest = 1.0F - a;
    const auto meng = [rest](float boven, int oud) {
        return static_cast<int>(
            std::min(255.0F, boven * 255.0F + static_cast<float>(oud) * rest + 0.5F));
    };
    return qRgba(meng(r, qRed(onder)), meng(g, qGreen(onder)), meng(b, qBlue(onder)),
                 meng(a, qAlpha(onder)));
}

}  // namespace

// The pixels are fetched before painting begins, since asking for them later
// would give the painter a copy.
Tekenvlak::Tekenvlak(QImage& beeld, double schaal)
    : beeld_(beeld), pixels_(reinterpret_cast<QRgb*>(beeld.bits())), painter_(&beeld) {
    painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                            QPainter::SmoothPixmapTransform);
    painter_.translate(0.0, beeld.height());
    painter_.scale(schaal, -schaal);
}

Tekenvlak::~Tekenvlak() = default;

void Tekenvlak::zetSchaduw(const Schaduw& schaduw) {
    schaduw_ = schaduw;
    const double sigma = schaduw.vervaging / 2.0;
    kern_.clear();
    if (sigma <= 0.0) return;
    const int straal = static_cast<int>(std::ceil(3.0 * sigma));
    double som = 0.0;
    for (int i = -straal; i <= straal; ++i)
        som += std::exp(-0.5 * i * i / (sigma * sigma));
    for (int i = -straal; i <= straal; ++i)
        kern_.push_back(static_cast<float>(std::exp(-0.5 * i * i / (sigma * sigma)) / som));
}

void Tekenvlak::bepaalDekking(std::span<const QRectF> vakken, const QRect& gebied) {
    dekking_.gebied = gebied;
    dekking_.waarden.assign(
        static_cast<std::size_t>(gebied.width()) * static_cast<std::size_t>(gebied.height()), 0.0F);
    for (const QRectF& vak : vakken) {
        const QRectF p = painter_.transform().mapRect(vak);
        const QRect geraakt = p.toAlignedRect() & gebied;
        for (int y = geraakt.top(); y <= geraakt.bottom(); ++y) {
            const float hoog = overlap(p.top(), p.bottom(), y);
            float* const rij = dekking_.waarden.data() +
                               static_cast<std::ptrdiff_t>(y - gebied.top()) * gebied.width();
            for (int x = geraakt.left(); x <= geraakt.right(); ++x) {
                float& waarde = rij[x - gebied.left()];
                waarde = std::min(1.0F, waarde + hoog * overlap(p.left(), p.right(), x));
            }
        }
    }
}

// Blurs the coverage, first along the rows, then along the columns.
void Tekenvlak::vervaag(double sigma) {
    if (sigma <= 0.0) return;
    const int breed = dekking_.gebied.width();
    const int hoog = dekking_.gebied.height();
    const int straal = static_cast<int>(kern_.size() / 2);
    hulp_.assign(dekking_.waarden.size(), 0.0F);
    for (int y = 0; y < hoog; ++y) {
        const float* const van = dekking_.waarden.data() + static_cast<std::ptrdiff_t>(y) * breed;
        float* const naar = hulp_.data() + static_cast<std::ptrdiff_t>(y) * breed;
        for (int k = -straal; k <= straal; ++k) {
            const float gewicht = kern_[static_cast<std::size_t>(k + straal)];
            for (int x = std::max(0, -k); x < std::min(breed, breed - k); ++x)
                naar[x] += gewicht * van[x + k];
        }
    }
    std::fill(dekking_.waarden.begin(), dekking_.waarden.end(), 0.0F);
    for (int y = 0; y < hoog; ++y) {
        float* const naar = dekking_.waarden.data() + static_cast<std::ptrdiff_t>(y) * breed;
        for (int k = std::max(-straal, -y); k <= std::min(straal, hoog - 1 - y); ++k) {
            const float gewicht = kern_[static_cast<std::size_t>(k + straal)];
            const float* const van = hulp_.data() + static_cast<std::ptrdiff_t>(y + k) * breed;
            for (int x = 0; x < breed; ++x)
                naar[x] += gewicht * van[x];
        }
    }
}

void Tekenvlak::kleurIn(const QColor& kleur, QPoint verschuiving) {
    const float alfa = kleur.alphaF();
    const float rood = kleur.redF(), groen = kleur.greenF(), blauw = kleur.blueF();
    const QRect doel = dekking_.gebied.translated(verschuiving) & beeld_.rect();
    const auto stap = beeld_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb));
    for (int y = doel.top(); y <= doel.bottom(); ++y) {
        const float* const rij =
            dekking_.waarden.data() +
            static_cast<std::ptrdiff_t>(y - verschuiving.y() - dekking_.gebied.top()) *
                dekking_.gebied.width();
        for (int x = doel.left(); x <= doel.right(); ++x) {
            const float a = alfa * rij[x - verschuiving.x() - dekking_.gebied.left()];
            if (a < 0.5F / 255.0F) continue;
            QRgb& pixel = pixels_[y * stap + x];
            pixel = over(pixel, rood * a, groen * a, blauw * a, a);
        }
    }
}

void Tekenvlak::vul(std::span<const QRectF> vakken) {
    QRectF omhullend;
    for (const QRectF& vak : vakken)
        omhullend |= painter_.transform().mapRect(vak);
    const bool schaduw = schaduw_.kleur.isValid() && schaduw_.kleur.alpha() > 0;
    const int rand = schaduw ? static_cast<int>(kern_.size() / 2) : 0;
    const QPoint naast(qRound(schaduw_.verschuiving.x()), -qRound(schaduw_.verschuiving.y()));
    const QRect ruim = omhullend.toAlignedRect().adjusted(-rand, -rand, rand, rand);
    // What lies outside the picture may still throw its shadow into it.
    const QRect gebied =
        ruim & beeld_.rect().adjusted(-rand - std::abs(naast.x()), -rand - std::abs(naast.y()),
                                      rand + std::abs(naast.x()), rand + std::abs(naast.y()));
    if (gebied.isEmpty()) return;
    bepaalDekking(vakken, gebied);
    if (schaduw) {
        scherp_ = dekking_.waarden;
        vervaag(schaduw_.vervaging / 2.0);
        QColor kleur = schaduw_.kleur;
        kleur.setAlphaF(kleur.alphaF() * vulkleur_.alphaF());
        kleurIn(kleur, naast);
        std::swap(scherp_, dekking_.waarden);
    }
    kleurIn(vulkleur_, QPoint(0, 0));
}

}  // namespace brixtel
