// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <array>

namespace platform {

// A notification's name on the bus. A plain value; any thread.
struct BusName {
    QString interface;
    QString member;
    QString path;  // of this program's own signals
};

// The bus's form of a name. A name without a bus form stops the program.
[[nodiscard]] BusName busNameOf(const QString& notification);

inline constexpr const char* kSaverDidStart = "com.apple.screensaver.didstart";
inline constexpr const char* kSaverWillStop = "com.apple.screensaver.willstop";

// The name that the desktops share for a saver or lock, and for those who keep it away.
inline constexpr const char* kSharedSaver = "org.freedesktop.ScreenSaver";

// The interfaces whose ActiveChanged reports the start or end of a saver or lock.
// KDE has the freedesktop interface.
inline constexpr std::array kSaverInterfaces{
    kSharedSaver,           "org.gnome.ScreenSaver",
    "org.mate.ScreenSaver", "org.cinnamon.ScreenSaver",
    "org.xfce.ScreenSaver",
};

}  // namespace platform
