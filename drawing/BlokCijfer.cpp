// SPDX-License-Identifier: MIT
#include "drawing/BlokCijfer.h"

namespace brixtel {

QSizeF BlokCijfer::maat(BlokMaat maat) {
    return {kolommen * maat.blok + (kolommen - 1) * maat.spleet,
            rijen * maat.blok + (rijen - 1) * maat.spleet};
}

std::vector<QRectF> BlokCijfer::vakken(std::span<const std::uint8_t> patroon,
                                       const BlokPlaats& plaats) {
    std::vector<QRectF> vakken;
    const double stap = plaats.blok + plaats.spleet;
    const std::size_t aantal = patroon.size();
    for (std::size_t i = 0; i < aantal; ++i) {
        const std::size_t r = plaats.omhoog ? aantal - 1 - i : i;
        for (int c = 0; c < kolommen; ++c) {
            if ((patroon[i] >> (kolommen - 1 - c) & 1) == 0) continue;
            vakken.emplace_back(plaats.bij.x() + c * stap,
                                plaats.bij.y() + static_cast<double>(r) * stap, plaats.blok,
                                plaats.blok);
        }
    }
    return vakken;
}

std::vector<QRectF> BlokCijfer::vakken(bool cijfer, const BlokPlaats& plaats) {
    return vakken(cijfer ? een : nul, plaats);
}

void BlokCijfer::teken(bool cijfer, const TekenOpties& opties, Tekenvlak& in) {
    in.zetVulkleur(opties.kleur);
    in.vul(vakken(
        cijfer,
        {.bij = opties.linksonder, .blok = opties.blok, .spleet = opties.spleet, .omhoog = true}));
}

}  // namespace brixtel
