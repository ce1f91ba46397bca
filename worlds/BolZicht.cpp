// SPDX-License-Identifier: MIT
// The part of the globe that the camera sees, and how finely it is drawn.
#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

#include "worlds/Bol.h"

namespace brixtel {

namespace {

constexpr double kVerbreden = 3.0;        // seconds
constexpr double kHoogsteBeeld = 4320.0;  // pixels
constexpr double kAfwijking = 0.25;       // pixels between a circle and its sides
constexpr int kMinsteSegmenten = 12;
constexpr double kRand = 1.02;  // room around the highest arc
constexpr int kStanden = 36;    // positions of the globe that are examined

double inGraden(double radialen) {
    return radialen * 180.0 / platform::kPi;
}

}  // namespace

double zacht(double deel) {
    const double t = std::clamp(deel, 0.0, 1.0);
    return t * t * (3.0 - 2.0 * t);
}

int rondeSegmenten(double deel) {
    const double straal = std::max(1.0, deel * kHoogsteBeeld);
    const double segmenten = platform::kPi / std::acos(1.0 - kAfwijking / straal);
    return std::max(kMinsteSegmenten, 4 * static_cast<int>(std::ceil(segmenten / 4.0)));
}

void BolZicht::vraag(double wens, double tijd) {
    if (wens <= naar_) return;
    van_ = tijd > 0.0 ? BolZicht::graden(tijd) : wens;
    naar_ = wens;
    begin_ = tijd;
}

double BolZicht::graden(double tijd) const {
    return van_ + (naar_ - van_) * zacht((tijd - begin_) / kVerbreden);
}

double bolZichtVoor(const std::vector<glm::dvec3>& punten, const platform::Node& bol,
                    const platform::Node& camera) {
    const glm::dmat4 oog = camera.worldTransform();
    const glm::dmat4 stand = bol.worldTransform();
    double hoogst = 0.0;
    for (const glm::dvec3& punt : punten) {
        const double straal = std::hypot(punt.x, punt.z);
        for (int k = 0; k < kStanden; ++k) {
            const double hoek = 2.0 * platform::kPi * k / kStanden;
            const glm::dvec4 plek(straal * std::sin(hoek), punt.y, straal * std::cos(hoek), 1.0);
            const glm::dvec3 naar(stand * plek - oog[3]);
            hoogst = std::max(hoogst, std::abs(glm::dot(naar, glm::dvec3(oog[1])) /
                                               glm::dot(naar, glm::dvec3(oog[2]))));
        }
    }
    return 2.0 * inGraden(std::atan(kRand * hoogst));
}

}  // namespace brixtel
