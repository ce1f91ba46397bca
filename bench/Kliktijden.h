// SPDX-License-Identifier: MIT
// Times of clicks on a program below the desktop rain, in blocks without and with the rain
// in turn.
#pragma once

#include <poll.h>

#include <QProcess>
#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

// A program that ends with its owner.
struct Einde {
    void operator()(QProcess* proces) const {
        proces->kill();
        proces->waitForFinished();
        delete proces;
    }
};
using Regen = std::unique_ptr<QProcess, Einde>;

struct Kliktijden {
    std::vector<double> zonder, met;  // milliseconds
};

// `maakRegen` returns the program that shows the rain, none where it does not rain. `klik` returns
// a click's milliseconds, none where the click never came. False where either fails.
template <typename MaakRegen, typename Klik>
bool meetKliks(int kliks, MaakRegen maakRegen, Klik klik, Kliktijden& tijden) {
    constexpr int kBlokken = 4;
    int nummer = 0;
    for (int blok = 0; blok < 2 * kBlokken; ++blok) {
        const bool regent = blok % 2 == 1;
        Regen regen;
        if (regent) {
            regen = maakRegen();
            if (!regen) return false;
        }
        // Waits for the end of the fade.
        poll(nullptr, 0, 1000);
        for (int i = 0; i < kliks / kBlokken; ++i) {
            // Pauses vary, so that clicks never keep step with the pictures.
            poll(nullptr, 0, 20 + ++nummer * 13 % 17);
            const auto duur = klik();
            if (!duur) {
                std::fprintf(stderr, "een klik kwam niet aan\n");
                return false;
            }
            (regent ? tijden.met : tijden.zonder).push_back(*duur);
        }
    }
    return true;
}

inline void drukRij(const char* wat, std::vector<double> rij) {
    std::sort(rij.begin(), rij.end());
    const auto deel = [&](double d) {
        return rij[static_cast<std::size_t>(d * static_cast<double>(rij.size() - 1))];
    };
    std::printf("%-14s %6zu %9.2f %9.2f %9.2f\n", wat, rij.size(), deel(0.5), deel(0.99),
                rij.back());
}

inline void druk(const Kliktijden& tijden) {
    std::printf("%-14s %6s %9s %9s %9s\n", "", "clicks", "median", "99 %", "worst");
    drukRij("without rain", tijden.zonder);
    drukRij("with rain", tijden.met);
}
