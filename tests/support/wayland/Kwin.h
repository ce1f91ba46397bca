// SPDX-License-Identifier: MIT
#pragma once

#include "tests/support/wayland/RealCompositor.h"

namespace wltest {

// A real compositor with a layer shell that is built on none of the others' libraries. One
// output of 640 × 480, drawn by the processor.
class Kwin : public RealCompositor {
  public:
    explicit Kwin(const QString& bus) {
        const QString original = installed("kwin_wayland");
        if (original.isEmpty()) return;
        // A container refuses the capabilities of the installed file, and the program wants
        // that name.
        const QString program = folder().filePath(QStringLiteral("kwin_wayland"));
        QFile::copy(original, program);
        QProcessEnvironment env = environment();
        env.insert(QStringLiteral("HOME"), folder().path());
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        env.insert(QStringLiteral("KWIN_COMPOSE"), QStringLiteral("Q"));
        start(program,
              {QStringLiteral("--virtual"), QStringLiteral("--width"), QStringLiteral("640"),
               QStringLiteral("--height"), QStringLiteral("480"), QStringLiteral("--no-lockscreen"),
               QStringLiteral("--socket"), QStringLiteral("wayland-1")},
              env);
    }
};

}  // namespace wltest
