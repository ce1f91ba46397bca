// SPDX-License-Identifier: MIT
// Draws the icon: a B of glowing blocks, left behind by falling columns, on a
// dark tile. `icoon-maak SIZE FILE.png`.
#include <QDir>
#include <QFileInfo>
#include <QLinearGradient>
#include <QPainterPath>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

#include "drawing/BlokTekst.h"
#include "drawing/Thema.h"

namespace {

using brixtel::BlokTekst;
using brixtel::Tekenvlak;
using brixtel::Thema;

// Measures in whole pixels, so that blocks are sharp at every size.
struct Maten {
    int zijde;
    int blok;
    int spleet;

    [[nodiscard]] int stap() const { return blok + spleet; }
    [[nodiscard]] int breedte() const { return 5 * stap() - spleet; }
    [[nodiscard]] int hoogte() const { return 7 * stap() - spleet; }
    [[nodiscard]] QPointF hoek() const {
        return {std::floor((zijde - breedte()) / 2.0), std::floor((zijde - hoogte()) / 2.0)};
    }
};

Maten maten(int zijde) {
    // Large icons leave room for the columns beside the letter; gaps show from 48 pixels on.
    const double deel = zijde >= 64 ? 0.6 : 0.7;
    const int stap = std::max(2, static_cast<int>(std::round(zijde * deel / 7.0)));
    const int spleet = zijde < 48 ? 0 : std::max(1, static_cast<int>(std::round(stap * 0.16)));
    return {zijde, stap - spleet, spleet};
}

QPainterPath tegel(int zijde) {
    QPainterPath pad;
    const double rand = zijde >= 48 ? zijde / 32.0 : 0.0;
    const double rond = zijde * 0.2;
    pad.addRoundedRect(QRectF(0, 0, zijde, zijde).adjusted(rand, rand, -rand, -rand), rond, rond);
    return pad;
}

void tekenTegel(QPainter& schilder, int zijde) {
    schilder.setRenderHint(QPainter::Antialiasing);
    QLinearGradient verloop(0, zijde, 0, 0);
    verloop.setColorAt(0.0, QColor(10, 46, 22));
    verloop.setColorAt(1.0, QColor(2, 10, 5));
    schilder.fillPath(tegel(zijde), verloop);
    if (zijde >= 32)
        schilder.strokePath(tegel(zijde), QPen(Thema::donker(), std::max(1.0, zijde / 64.0)));
}

// The trail above and below each column of the letter, dimmer with the distance.
void tekenSporen(Tekenvlak& vlak, const Maten& m) {
    constexpr int kBoven[] = {2, 4, 1, 3, 2};
    constexpr int kOnder[] = {1, 0, 2, 0, 1};
    vlak.painter().setClipPath(tegel(m.zijde));
    for (int kolom = 0; kolom < 5; ++kolom) {
        const auto blok = [&](int rij, double sterkte) {
            QColor kleur = Thema::groen();
            kleur.setAlphaF(static_cast<float>(sterkte));
            const QPointF bij = m.hoek() + QPointF(kolom * m.stap(), rij * m.stap());
            vlak.painter().fillRect(QRectF(bij, QSizeF(m.blok, m.blok)), kleur);
        };
        for (int rij = 0; rij < kBoven[kolom]; ++rij)
            blok(7 + rij, 0.34 / (1.0 + 0.8 * rij));
        for (int rij = 0; rij < kOnder[kolom]; ++rij)
            blok(-1 - rij, 0.22 / (1.0 + rij));
    }
    vlak.painter().setClipping(false);
}

void tekenLetter(Tekenvlak& vlak, const Maten& m) {
    const std::vector<QRectF> blokken =
        BlokTekst::vakken(QStringLiteral("B"), {.bij = m.hoek(),
                                                .blok = static_cast<double>(m.blok),
                                                .spleet = static_cast<double>(m.spleet),
                                                .omhoog = true});
    QColor gloed = Thema::groen();
    gloed.setAlphaF(0.85F);
    if (m.zijde >= 32)
        vlak.zetSchaduw({.verschuiving = {0, 0}, .vervaging = m.zijde / 9.0, .kleur = gloed});
    vlak.zetVulkleur(Thema::groen());
    vlak.vul(blokken);
    // The leading block of each column is the brightest, as in the rain.
    vlak.zetSchaduw({});
    vlak.zetVulkleur(Thema::cijferFel());
    std::vector<QRectF> voorste;
    for (const QRectF& vak : blokken)
        if (vak.top() <= m.hoek().y() + 0.5) voorste.push_back(vak);
    vlak.vul(voorste);
}

}  // namespace

int main(int argc, char** argv) {
    const int zijde = argc == 3 ? std::atoi(argv[1]) : 0;
    if (zijde < 16 || zijde > 1024) {
        std::fputs("icoon-maak MAAT BESTAND.png\n", stderr);
        return 2;
    }
    const QString naam = QString::fromLocal8Bit(argv[2]);
    const auto beeld =
        Thema::beeld(QSizeF(zijde, zijde), {.schaal = 1.0, .teken = [zijde](Tekenvlak& vlak) {
                                                const Maten m = maten(zijde);
                                                tekenTegel(vlak.painter(), zijde);
                                                if (zijde >= 32) tekenSporen(vlak, m);
                                                tekenLetter(vlak, m);
                                            }});
    QDir().mkpath(QFileInfo(naam).path());
    if (beeld && beeld->save(naam, "PNG")) return 0;
    std::fprintf(stderr, "%s kan niet geschreven worden\n", argv[2]);
    return 1;
}
