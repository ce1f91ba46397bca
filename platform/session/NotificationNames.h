// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>

namespace platform {

// A notification's name on the bus. A value: any thread, like any other value.
struct BusName {
    QString interface;
    QString member;
    QString path;  // that this program sends from
};

// Stops the program on a name that the bus has no words for.
[[nodiscard]] BusName busNameOf(const QString& notification);

inline constexpr const char* kSaverDidStart = "com.apple.screensaver.didstart";
inline constexpr const char* kSaverWillStop = "com.apple.screensaver.willstop";

// The name that the desktops share for a saver or lock, and for those who keep it away.
inline constexpr const char* kSharedSaver = "org.freedesktop.ScreenSaver";

// The interfaces whose ActiveChanged says that a saver or lock begins or ends.
// KDE has the freedesktop interface.
inline constexpr std::array kSaverInterfaces{
    kSharedSaver,           "org.gnome.ScreenSaver",
    "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver",
    "org.xfce.ScreenSaver",
};

}  // namespace platform
