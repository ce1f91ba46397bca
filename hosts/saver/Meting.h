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

// What a run cost and showed, for --meet. Looks at one window's statistics twice
// a second, so that the rate can be told over the last half of a run whose end
// nobody knows beforehand.
class Meting {
  public:
    using Stand = std::function<platform::WindowStatistics()>;

    // `begin` is when the process was started, in the clock's time.
    Meting(platform::MediaClock& klok, double begin, Stand stand);

    // One line of JSON, with its line end.
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
    // One look in how many is kept, and how many there were.
    int elke_ = 1;
    int blik_ = 0;
    platform::Timer timer_;
};

}  // namespace brixtel
