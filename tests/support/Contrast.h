// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <algorithm>
#include <cmath>

// The contrast of two colours by WCAG 2: 1 to 21.
inline double contrast(QRgb een, QRgb ander) {
    const auto licht = [](QRgb kleur) {
        const auto deel = [](int waarde) {
            const double s = waarde / 255.0;
            return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * deel(qRed(kleur)) + 0.7152 * deel(qGreen(kleur)) +
               0.0722 * deel(qBlue(kleur));
    };
    const double a = licht(een) + 0.05, b = licht(ander) + 0.05;
    return std::max(a, b) / std::min(a, b);
}
