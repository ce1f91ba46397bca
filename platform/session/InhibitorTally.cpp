// SPDX-License-Identifier: MIT
#include "platform/session/InhibitorTally.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QVariantMap>
#include <algorithm>

#include "platform/session/NotificationNames.h"

namespace platform {

namespace {

constexpr uint kIdleFlag = 8;
const QLatin1String kSessionManager("org.gnome.SessionManager");
const QLatin1String kPortal("org.freedesktop.portal.Inhibit");
const QLatin1String kRequest("org.freedesktop.portal.Request");

bool is(const QDBusMessage& call, QLatin1String interface, const char* member,
        const char* signature) {
    return call.interface() == interface && call.member() == QLatin1String(member) &&
           call.signature() == QLatin1String(signature);
}

bool isOfIdleness(const QVariant& flags) {
    return (flags.toUInt() & kIdleFlag) != 0;
}

}  // namespace

bool InhibitorTally::note(const QDBusMessage& call) {
    const QString caller = call.service();
    if (caller.isEmpty()) return false;
    const bool before = callers_.contains(caller);
    if (!before && callers_.size() >= kMostCallers) return false;
    Held held = callers_.value(caller);
    count(call, held);
    if (held.isEmpty())
        callers_.remove(caller);
    else
        callers_[caller] = held;
    return callers_.contains(caller) != before;
}

void InhibitorTally::count(const QDBusMessage& call, Held& held) {
    const QLatin1String saver(kSharedSaver);
    if (is(call, saver, "Inhibit", "ss")) {
        held.saver = std::min(held.saver + 1, kMostOfOne);
    } else if (is(call, saver, "UnInhibit", "u")) {
        held.saver = std::max(held.saver - 1, 0);
    } else if (is(call, kSessionManager, "Inhibit", "susu")) {
        if (isOfIdleness(call.arguments().at(3)))
            held.session = std::min(held.session + 1, kMostOfOne);
    } else if (is(call, kSessionManager, "Uninhibit", "u")) {
        held.session = std::max(held.session - 1, 0);
    } else if (is(call, kPortal, "Inhibit", "sua{sv}")) {
        countRequest(call, held);
    } else if (is(call, kRequest, "Close", "")) {
        endRequest(call, held);
    }
}

// The token of a request is the last word of the path at which it is closed.
void InhibitorTally::countRequest(const QDBusMessage& call, Held& held) {
    if (!isOfIdleness(call.arguments().at(1)) || held.requests.size() >= kMostOfOne) return;
    const auto options = qdbus_cast<QVariantMap>(call.arguments().at(2));
    held.requests << options.value(QStringLiteral("handle_token")).toString() + QLatin1String("");
}

void InhibitorTally::endRequest(const QDBusMessage& call, Held& held) {
    const QString token = call.path().section(u'/', -1);
    if (!held.requests.removeOne(token)) held.requests.removeOne(QString());
}

}  // namespace platform
