// SPDX-License-Identifier: MIT
// The window systems for a fuzzer of command lines, which links none: their names, and
// windows that are numbers. The corpus test links the real ones.
#include "platform/window/systems/WindowSystems.h"

namespace platform {

QStringList windowSystemNames() {
    return {QStringLiteral("wayland"), QStringLiteral("x11")};
}

std::optional<HostRef> readHost(const QString& text) {
    bool is = false;
    (void)text.toULongLong(&is, 0);
    return is ? std::optional<HostRef>(HostRef{}) : std::nullopt;
}

std::optional<WindowRef> readWindow(const QString& text) {
    bool is = false;
    (void)text.toULongLong(&is, 0);
    return is ? std::optional<WindowRef>(WindowRef{}) : std::nullopt;
}

}  // namespace platform
