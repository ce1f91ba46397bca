// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <vector>

// Counts the flashes of a film as WCAG 2.3.1 does. A general flash is a pair of opposing
// changes of a tenth or more of the greatest relative luminance, the darker one below 0.80; a
// red flash a pair of opposing changes to or from a saturated red. They count where a quarter
// of a field of 10 degrees makes them together: a third by a third of the picture.
class FlashAnalysis {
  public:
    // The next picture, of the size of the first, at a time in seconds that rises.
    void add(const QImage& picture, double time);

    // The most flashes within any one second, in any field.
    [[nodiscard]] int generalFlashes() const { return general_.most; }
    [[nodiscard]] int redFlashes() const { return red_.most; }

    // Mean relative luminance of the last picture.
    [[nodiscard]] double meanLight() const { return mean_; }

    // Relative luminance of one pixel.
    [[nodiscard]] static double luminance(QRgb pixel);

  private:
    struct Pixel {
        float extreme = 0.0F;   // where it last turned, or has come since
        int direction = 0;      // of its last change
        double changed = -1e9;  // when that was
    };
    struct Field {
        int direction = 0;
        std::vector<double> changes;
    };
    struct Kind {
        std::vector<Pixel> pixels;
        std::vector<Field> fields;
        int most = 0;
    };
    void follow(Kind& kind, std::size_t pixel, float value, float step, float darkest, double time);
    void count(Kind& kind, double time);

    QSize size_;
    Kind general_, red_;
    double mean_ = 0.0;
};
