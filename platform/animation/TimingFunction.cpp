// SPDX-License-Identifier: MIT
#include "platform/animation/TimingFunction.h"

#include <algorithm>
#include <cmath>

namespace platform {

TimingFunction::TimingFunction(double x1, double y1, double x2, double y2)
    : ax_(1.0 - 3.0 * x2 + 3.0 * x1),
      bx_(3.0 * x2 - 6.0 * x1),
      cx_(3.0 * x1),
      ay_(1.0 - 3.0 * y2 + 3.0 * y1),
      by_(3.0 * y2 - 6.0 * y1),
      cy_(3.0 * y1),
      linear_(x1 == y1 && x2 == y2) {}

double TimingFunction::operator()(double time) const {
    const double x = std::clamp(time, 0.0, 1.0);
    if (linear_ || x == 0.0 || x == 1.0) return x;
    // x(u) never falls, so halving always converges. After 40 halvings u is
    // exact to 2^-40.
    double low = 0.0, high = 1.0;
    for (int i = 0; i < 40; ++i) {
        const double u = 0.5 * (low + high);
        (((ax_ * u + bx_) * u + cx_) * u < x ? low : high) = u;
    }
    const double u = 0.5 * (low + high);
    return ((ay_ * u + by_) * u + cy_) * u;
}

}  // namespace platform
