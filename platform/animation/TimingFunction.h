// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

// A cubic Bézier curve from (0, 0) to (1, 1) that maps the share of time passed
// to the share of progress. A value: any thread, like any other value.
class TimingFunction {
  public:
    // The control points (x1, y1) and (x2, y2); x within [0, 1].
    TimingFunction(double x1, double y1, double x2, double y2);

    // The curves of CSS Easing Functions Level 1; `standard` is its "ease".
    static TimingFunction linear() { return {0.0, 0.0, 1.0, 1.0}; }
    static TimingFunction easeIn() { return {0.42, 0.0, 1.0, 1.0}; }
    static TimingFunction easeOut() { return {0.0, 0.0, 0.58, 1.0}; }
    static TimingFunction easeInEaseOut() { return {0.42, 0.0, 0.58, 1.0}; }
    static TimingFunction standard() { return {0.25, 0.1, 0.25, 1.0}; }

    // Progress at the share `time`, which is clamped to [0, 1].
    [[nodiscard]] double operator()(double time) const;

    [[nodiscard]] bool isLinear() const { return linear_; }

  private:
    // Polynomial coefficients of x(u) and y(u).
    double ax_, bx_, cx_, ay_, by_, cy_;
    bool linear_;
};

}  // namespace platform
