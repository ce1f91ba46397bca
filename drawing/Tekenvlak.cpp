// SPDX-License-Identifier: MIT
#include "drawing/Tekenvlak.h"

#include <algorithm>
#include <cmath>

namespace brixtel {

namespace {

// Two digits, each at a few positions between two pixels.
constexpr std::size_t kMeesteVormen = 8;

// The part of the pixel [i, i + 1) that lies within [laag, hoog).
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

// The pixels are fetched before painting begins: a later request would give the
// painter a copy.
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
    vormen_.clear();
    oudste_ = 0;
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

void Tekenvlak::bepaalDekking(Vorm& vorm) const {
    const QRect gebied(QPoint(0, 0), vorm.maat);
    vorm.scherp.assign(
        static_cast<std::size_t>(gebied.width()) * static_cast<std::size_t>(gebied.height()), 0.0F);
    for (const QRectF& vak : vorm.vakken) {
        const QRect geraakt = vak.toAlignedRect() & gebied;
        for (int y = geraakt.top(); y <= geraakt.bottom(); ++y) {
            const float hoog = overlap(vak.top(), vak.bottom(), y);
            float* const naar =
                vorm.scherp.data() + static_cast<std::ptrdiff_t>(y) * gebied.width();
            for (int x = geraakt.left(); x <= geraakt.right(); ++x)
                naar[x] = std::min(1.0F, naar[x] + hoog * overlap(vak.left(), vak.right(), x));
        }
    }
}

// Blurs the coverage, along the rows first, then along the columns.
void Tekenvlak::vervaag(Vorm& vorm) {
    vorm.vaag = vorm.scherp;
    if (kern_.empty()) return;
    const int breed = vorm.maat.width();
    const int hoog = vorm.maat.height();
    const int straal = static_cast<int>(kern_.size() / 2);
    hulp_.assign(vorm.scherp.size(), 0.0F);
    for (int y = 0; y < hoog; ++y) {
        const float* const van = vorm.scherp.data() + static_cast<std::ptrdiff_t>(y) * breed;
        float* const naar = hulp_.data() + static_cast<std::ptrdiff_t>(y) * breed;
        for (int k = -straal; k <= straal; ++k) {
            const float gewicht = kern_[static_cast<std::size_t>(k + straal)];
            for (int x = std::max(0, -k); x < std::min(breed, breed - k); ++x)
                naar[x] += gewicht * van[x + k];
        }
    }
    std::fill(vorm.vaag.begin(), vorm.vaag.end(), 0.0F);
    for (int y = 0; y < hoog; ++y) {
        float* const naar = vorm.vaag.data() + static_cast<std::ptrdiff_t>(y) * breed;
        for (int k = std::max(-straal, -y); k <= std::min(straal, hoog - 1 - y); ++k) {
            const float gewicht = kern_[static_cast<std::size_t>(k + straal)];
            const float* const van = hulp_.data() + static_cast<std::ptrdiff_t>(y + k) * breed;
            for (int x = 0; x < breed; ++x)
                naar[x] += gewicht * van[x];
        }
    }
}

Tekenvlak::Vorm& Tekenvlak::vormVan(QSize maat, bool schaduw) {
    const auto bekend = std::find_if(vormen_.begin(), vormen_.end(), [&](const Vorm& vorm) {
        return vorm.maat == maat && vorm.vakken == vakken_;
    });
    if (bekend != vormen_.end()) return *bekend;
    if (vormen_.size() < kMeesteVormen) vormen_.emplace_back();
    Vorm& vorm = vormen_[oudste_++ % vormen_.size()];
    vorm.vakken = vakken_;
    vorm.maat = maat;
    vorm.afdruk.clear();
    bepaalDekking(vorm);
    if (schaduw) vervaag(vorm);
    return vorm;
}

void Tekenvlak::kleurIn(const std::vector<float>& dekking, const QRect& gebied,
                        const QColor& kleur) {
    const float alfa = kleur.alphaF();
    const float rood = kleur.redF(), groen = kleur.greenF(), blauw = kleur.blueF();
    const QRect doel = gebied & beeld_.rect();
    for (int y = doel.top(); y <= doel.bottom(); ++y) {
        QRgb* const pixels = rij(y);
        const float* const deel =
            dekking.data() + static_cast<std::ptrdiff_t>(y - gebied.top()) * gebied.width();
        for (int x = doel.left(); x <= doel.right(); ++x) {
            const float a = alfa * deel[x - gebied.left()];
            if (a < 0.5F / 255.0F) continue;
            pixels[x] = over(pixels[x], rood * a, groen * a, blauw * a, a);
        }
    }
}

QRgb* Tekenvlak::rij(int y) const {
    return pixels_ + y * (beeld_.bytesPerLine() / static_cast<qsizetype>(sizeof(QRgb)));
}

bool Tekenvlak::isLeeg(const QRect& gebied) const {
    const auto leeg = [](QRgb pixel) { return pixel == 0; };
    for (int y = gebied.top(); y <= gebied.bottom(); ++y)
        if (!std::all_of(rij(y) + gebied.left(), rij(y) + gebied.right() + 1, leeg)) return false;
    return true;
}

bool Tekenvlak::drukAf(const Vorm& vorm, const QRect& gebied) {
    if (vorm.afdruk.empty() || vorm.kleur != vulkleur_) return false;
    const QRgb* van = vorm.afdruk.data();
    for (int y = gebied.top(); y <= gebied.bottom(); ++y, van += gebied.width())
        std::copy_n(van, gebied.width(), rij(y) + gebied.left());
    return true;
}

void Tekenvlak::onthoud(Vorm& vorm, const QRect& gebied) {
    vorm.kleur = vulkleur_;
    vorm.afdruk.clear();
    for (int y = gebied.top(); y <= gebied.bottom(); ++y)
        vorm.afdruk.insert(vorm.afdruk.end(), rij(y) + gebied.left(), rij(y) + gebied.right() + 1);
}

void Tekenvlak::vul(std::span<const QRectF> vakken) {
    vakken_.clear();
    QRectF omhullend;
    for (const QRectF& vak : vakken) {
        vakken_.push_back(painter_.transform().mapRect(vak));
        omhullend |= vakken_.back();
    }
    const bool schaduw = schaduw_.kleur.isValid() && schaduw_.kleur.alpha() > 0;
    const int rand = schaduw ? static_cast<int>(kern_.size() / 2) : 0;
    const QPoint naast(qRound(schaduw_.verschuiving.x()), -qRound(schaduw_.verschuiving.y()));
    const QRect ruim = omhullend.toAlignedRect().adjusted(-rand, -rand, rand, rand);
    // Blocks outside the picture may cast a shadow into it.
    const QRect gebied =
        ruim & beeld_.rect().adjusted(-rand - std::abs(naast.x()), -rand - std::abs(naast.y()),
                                      rand + std::abs(naast.x()), rand + std::abs(naast.y()));
    if (gebied.isEmpty()) return;
    for (QRectF& vak : vakken_)
        vak.translate(-gebied.topLeft());
    Vorm& vorm = vormVan(gebied.size(), schaduw);
    const QRect schaduwGebied = gebied.translated(naast);
    const QRect geheel = schaduw ? gebied | schaduwGebied : gebied;
    const bool leeg = beeld_.rect().contains(geheel) && isLeeg(geheel);
    if (leeg && drukAf(vorm, geheel)) return;
    if (schaduw) {
        QColor kleur = schaduw_.kleur;
        kleur.setAlphaF(kleur.alphaF() * vulkleur_.alphaF());
        kleurIn(vorm.vaag, schaduwGebied, kleur);
    }
    kleurIn(vorm.scherp, gebied, vulkleur_);
    if (leeg) onthoud(vorm, geheel);
}

}  // namespace brixtel
