// SPDX-License-Identifier: MIT
// The lines given to a globe, and the nodes that it makes of them.
#pragma once

#include <vector>

#include "worlds/DrieWereld.h"

namespace steun {

// Countries all round the earth, each with a number of connections of its own.
inline std::vector<brixtel::Lijn> lijnen(int aantal) {
    std::vector<brixtel::Lijn> alle;
    for (int i = 0; i < aantal; ++i)
        alle.push_back(
            {{std::string("L").append(std::to_string(i)), -40.0 + 5.0 * (i % 24), 10.0 * i - 120.0},
             {"Proef"},
             aantal - i});
    return alle;
}

// The northern half is land.
inline brixtel::LandKaart noordland() {
    QImage beeld(720, 360, QImage::Format_RGB32);
    beeld.fill(Qt::white);
    for (int y = 0; y < 180; ++y)
        for (int x = 0; x < 720; ++x)
            beeld.setPixelColor(x, y, Qt::black);
    return brixtel::LandKaart(beeld);
}

// Each line has an arc, a dot, a light and a label.
inline const platform::Node& deel(const brixtel::DrieWereld& w, std::size_t lijn,
                                  std::size_t welk) {
    return *w.lijnenNode()->children().at(4 * lijn + welk);
}
inline const platform::Node& label(const brixtel::DrieWereld& w, std::size_t lijn) {
    return deel(w, lijn, 3);
}
inline std::size_t aantalLijnen(const brixtel::DrieWereld& w) {
    return w.lijnenNode()->children().size() / 4;
}
inline std::size_t zichtbareLabels(const brixtel::DrieWereld& w) {
    std::size_t aantal = 0;
    for (std::size_t i = 0; i < aantalLijnen(w); ++i)
        aantal += label(w, i).opacity() > 0.0 ? 1 : 0;
    return aantal;
}

}  // namespace steun
