// SPDX-License-Identifier: MIT
// Private to platform/session and its tests.
#pragma once

#include <QMap>
#include <QString>
#include <QStringList>

class QDBusMessage;

namespace platform {

// Counts the callers that keep the session from counting as idle, by these calls:
//
//   org.freedesktop.ScreenSaver     Inhibit(ss), UnInhibit(u)
//   org.freedesktop.portal.Inhibit  Inhibit(sua{sv}) with the flag for idleness; the end is
//                                   the request's own Close()
//   org.gnome.SessionManager        Inhibit(susu) with the same flag, Uninhibit(u)
//
// The answers to a caller are not read. Calls are therefore counted by caller: each end removes
// one of the caller's own requests. Main thread.
class InhibitorTally {
  public:
    // The most callers that count, and the most requests of one caller.
    static constexpr qsizetype kMostCallers = 64;
    static constexpr int kMostOfOne = 64;

    // Counts a call; returns whether the caller's first one or last end came.
    bool note(const QDBusMessage& call);
    // Forgets a caller that left the bus; returns whether the caller had requests.
    bool left(const QString& caller) { return callers_.remove(caller) > 0; }

    [[nodiscard]] bool any() const { return !callers_.isEmpty(); }
    [[nodiscard]] bool has(const QString& caller) const { return callers_.contains(caller); }

  private:
    struct Held {
        int saver = 0;
        int session = 0;
        QStringList requests;  // of the portal; empty for one without a token
        [[nodiscard]] bool isEmpty() const {
            return saver == 0 && session == 0 && requests.isEmpty();
        }
    };
    static void count(const QDBusMessage& call, Held& held);
    static void countRequest(const QDBusMessage& call, Held& held);
    static void endRequest(const QDBusMessage& call, Held& held);

    QMap<QString, Held> callers_;
};

}  // namespace platform
