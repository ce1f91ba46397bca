// SPDX-License-Identifier: MIT
#include "platform/session/ReducedMotion.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QMap>
#include <QObject>
#include <QSet>
#include <algorithm>
#include <array>
#include <utility>

#include "platform/session/BusLink.h"

namespace platform {

namespace {

const QLatin1String kService("org.freedesktop.portal.Desktop");
const QLatin1String kPath("/org/freedesktop/portal/desktop");
const QLatin1String kInterface("org.freedesktop.portal.Settings");

// One desktop's setting, and the value by which it wishes for less movement.
struct Setting {
    QLatin1String space;
    QLatin1String key;
    int wish;
};
constexpr std::array<Setting, 3> kSettings{{
    {QLatin1String("org.freedesktop.appearance"), QLatin1String("reduced-motion"), 1},
    {QLatin1String("org.gnome.desktop.interface"), QLatin1String("enable-animations"), 0},
    // The factor for the length of all animations, as text.
    {QLatin1String("org.kde.kdeglobals.KDE"), QLatin1String("AnimationDurationFactor"), 0},
}};

}  // namespace

class ReducedMotion::Link final : public QObject {
    Q_OBJECT

  public:
    Link(const QString& address, std::function<void(bool)> action)
        : action_(std::move(action)),
          bus_({.address = address,
                .name = "settings",
                .prepare = [this](QDBusConnection& bus) { subscribe(bus); },
                .ready =
                    [this](QDBusConnection* bus) {
                        if (bus) ask();
                    }}) {}

    Q_SLOT void changed(const QString& space, const QString& key, const QDBusVariant& value) {
        // A change is newer than the answer to the first question, even if it is delivered
        // before that answer.
        heard_.insert(key);
        note(space, key, value.variant());
        tell();
    }

  private:
    // On the queue.
    void subscribe(QDBusConnection& bus) {
        // The slot is looked up by its types' names, which a type has once it is in use.
        qRegisterMetaType<QDBusVariant>();
        bus.connect(QString(), kPath, kInterface, QStringLiteral("SettingChanged"), this,
                    SLOT(changed(QString, QString, QDBusVariant)));
    }

    void ask() {
        QDBusMessage call =
            QDBusMessage::createMethodCall(kService, kPath, kInterface, QStringLiteral("ReadAll"));
        QStringList spaces;
        for (const Setting& setting : kSettings)
            spaces << setting.space;
        call << spaces;
        bus_.call(
            call, [this](const QDBusMessage& reply) { read(reply); }, BusLink::Absent::Starts);
    }

    void read(const QDBusMessage& reply) {
        if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) return;
        const auto all = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().first());
        for (const Setting& setting : kSettings) {
            const QVariantMap space = all.value(setting.space);
            if (space.contains(setting.key) && !heard_.contains(setting.key))
                note(setting.space, setting.key, space.value(setting.key));
        }
        tell();
    }

    void note(const QString& space, const QString& key, const QVariant& value) {
        for (std::size_t i = 0; i < kSettings.size(); ++i) {
            const Setting& setting = kSettings[i];
            if (space != setting.space || key != setting.key) continue;
            bool isNumber = false;
            const double number = value.toDouble(&isNumber);
            wishes_[i] = isNumber && number == setting.wish;
        }
    }

    void tell() {
        const bool wished = std::find(wishes_.begin(), wishes_.end(), true) != wishes_.end();
        // The action may drop this.
        if (std::exchange(wished_, wished) != wished) action_(wished);
    }

    const std::function<void(bool)> action_;
    std::array<bool, kSettings.size()> wishes_{};
    bool wished_ = false;
    QSet<QString> heard_;
    BusLink bus_;
};

ReducedMotion::ReducedMotion(const QString& busAddress, std::function<void(bool)> action)
    : link_(std::make_unique<Link>(busAddress, std::move(action))) {}

ReducedMotion::~ReducedMotion() = default;

}  // namespace platform

#include "ReducedMotion.moc"
