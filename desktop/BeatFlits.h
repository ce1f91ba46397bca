// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <algorithm>

#include "drawing/Thema.h"
#include "platform/animation/Animation.h"

namespace brixtel {

// The colour of the black screen's flash on a beat: a green layer over the whole screen,
// transparent at rest.
inline QColor beatFlitsKleur() {
    constexpr float kAlfa = 0.13F;
    QColor kleur = Thema::groen();
    kleur.setAlphaF(kAlfa);
    return kleur;
}

// The course of the layer's opacity after a beat of this strength, 0...1.
inline platform::BasicAnimation beatFlits(double sterkte) {
    constexpr double kErbij = 0.35;  // on top of the beat's strength
    constexpr double kDuur = 0.35;   // seconds
    return {.keyPath = platform::KeyPath::Opacity,
            .from = std::min(sterkte + kErbij, 1.0),
            .to = 0.0,
            .timing = {.duration = kDuur}};
}

}  // namespace brixtel
