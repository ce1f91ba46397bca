// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "platform/time/Timer.h"
#include "platform/window/Window.h"

namespace brixtel {

// The cost and the pictures of a run, for --meet. Samples one window's statistics twice a
// second, which gives the rate over the last half of a run of unknown length.
class Meting {
  public:
    using Stand = std::function<platform::WindowStatistics()>;

    // `begin` is the start of the process, in the clock's time.
    Meting(platform::MediaClock& klok, double begin, Stand stand);

    // The result as one line of JSON, with its line feed.
    [[nodiscard]] QByteArray regel(const QString& keuze) const;

  private:
    struct Monster {
        double tijd;
        double beelden;
    };
    void bemonster();
    [[nodiscard]] double perSeconde(const Monster& laatste) const;

    platform::MediaClock& klok_;
    const double begin_;
    const double start_;
    const Stand stand_;
    std::vector<Monster> monsters_;
    // One sample in `elke_` is kept; `blik_` counts all samples.
    int elke_ = 1;
    int blik_ = 0;
    platform::Timer timer_;
};

}  // namespace brixtel
