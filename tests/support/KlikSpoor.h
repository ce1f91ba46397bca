// SPDX-License-Identifier: MIT
// Click tracks, and sounds to lay over them.
#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

#include "platform/time/RandomSource.h"

namespace steun {

struct KlikSpoor {
    double perMinuut = 120;
    double seconden = 60;
    double sterkte = 0.5;   // of full scale
    double hoogte = 1000;   // Hz
    double duur = 0.005;    // seconds until a third as loud
    double eerste = 0.5;    // seconds
    double tempo = 44'100;  // samples a second

    [[nodiscard]] double periode() const { return 60.0 / perMinuut; }
    [[nodiscard]] int kliks() const {
        return static_cast<int>(std::ceil((seconden - eerste) / periode() - 1e-9));
    }
    [[nodiscard]] double tijd(int klik) const { return eerste + klik * periode(); }

    [[nodiscard]] std::vector<float> maak() const {
        std::vector<float> monsters(static_cast<std::size_t>(seconden * tempo));
        for (int klik = 0; klik < kliks(); ++klik) {
            const auto begin = static_cast<std::size_t>(tijd(klik) * tempo);
            const auto lengte = static_cast<std::size_t>(8 * duur * tempo);
            for (std::size_t i = 0; i < lengte && begin + i < monsters.size(); ++i) {
                const double t = static_cast<double>(i) / tempo;
                monsters[begin + i] += static_cast<float>(
                    sterkte * std::exp(-t / duur) * std::sin(2 * std::numbers::pi * hoogte * t));
            }
        }
        return monsters;
    }
};

// Adds white noise, uniform in ±sterkte.
inline void voegRuis(std::vector<float>& monsters, double sterkte, std::uint64_t zaad) {
    platform::RandomSource toeval(zaad);
    for (float& monster : monsters)
        monster += static_cast<float>(toeval.between(-sterkte, sterkte));
}

// Adds pink noise, −3 dB per octave like music; the economy filter of P. Kellet (musicdsp.org).
inline void voegRozeRuis(std::vector<float>& monsters, double sterkte, std::uint64_t zaad) {
    platform::RandomSource toeval(zaad);
    double a = 0, b = 0, c = 0;
    for (float& monster : monsters) {
        const double wit = toeval.between(-1, 1);
        a = 0.99765 * a + wit * 0.0990460;
        b = 0.96300 * b + wit * 0.2965164;
        c = 0.57000 * c + wit * 1.0526913;
        monster += static_cast<float>(sterkte * 0.3 * (a + b + c + wit * 0.1848));
    }
}

// Adds a chord with overtones that swells and trembles.
inline void voegAkkoord(std::vector<float>& monsters, double sterkte, double tempo) {
    for (std::size_t i = 0; i < monsters.size(); ++i) {
        const double t = static_cast<double>(i) / tempo;
        const double zwel = 0.75 + 0.25 * std::sin(2 * std::numbers::pi * 0.3 * t);
        double som = 0;
        for (const double toon : {220.0, 277.2, 329.6})
            for (int boven = 1; boven <= 5; ++boven)
                som += std::sin(2 * std::numbers::pi * toon * boven * t +
                                0.3 * std::sin(2 * std::numbers::pi * 5 * t)) /
                       boven;
        monsters[i] += static_cast<float>(sterkte * zwel * som / 6);
    }
}

}  // namespace steun
