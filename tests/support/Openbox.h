// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

// A window manager for a test's own display, and how to know that it is ready.
// It takes its place on the root window long before it manages windows, and one
// that asks to be shown in between never is.
namespace openbox {

// To start it with: once it manages windows, it puts a property there.
inline QStringList arguments() {
    return {QStringLiteral("--startup"),
            QStringLiteral("xprop -root -f _READY_FOR_TESTS 8s -set _READY_FOR_TESTS managed")};
}

// Prints it, with the next in it once it is there.
inline QStringList question() {
    return {QStringLiteral("xprop"), QStringLiteral("-root"), QStringLiteral("_READY_FOR_TESTS")};
}
inline constexpr const char* kReady = "\"managed\"";

}  // namespace openbox
