// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/wayland/RealCompositor.h"

namespace wltest {

// A real compositor without a layer shell, with one output of 640 × 480.
class Weston : public RealCompositor {
  public:
    explicit Weston(const QStringList& more = {QStringLiteral("--use-pixman")}) {
        const QString program = installed("weston");
        if (program.isEmpty()) return;
        start(program,
              QStringList{QStringLiteral("--backend=headless-backend.so"),
                          QStringLiteral("--socket=wayland-1"), QStringLiteral("--width=640"),
                          QStringLiteral("--height=480")} +
                  more,
              environment());
    }
};

}  // namespace wltest
