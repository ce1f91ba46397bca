// SPDX-License-Identifier: MIT
#include "platform/session/MutterIdle.h"

#include <QDBusMessage>
#include <QSet>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/session/BusLink.h"
#include "platform/session/BusNames.h"

namespace platform {

namespace {
const QString kService = QStringLiteral("org.gnome.Mutter.IdleMonitor");
const QString kPath = QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core");

QDBusMessage method(const char* name) {
    return QDBusMessage::createMethodCall(kService, kPath, kService, QLatin1String(name));
}
}  // namespace

class MutterIdle::Link final : public QObject {
    Q_OBJECT

  public:
    Link(const QString& address, double seconds, Actions actions)
        : milliseconds_(static_cast<quint64>(std::llround(seconds * 1000.0))),
          actions_(std::move(actions)),
          bus_({.address = address,
                .name = "idle",
                .prepare = [this](QDBusConnection& bus) { subscribe(bus); },
                .ready = [this](QDBusConnection* bus) { bus ? ask() : setPresent(false); }}) {}

    Q_SLOT void fired(uint watch) {
        if (watch == active_) {
            active_.reset();
            return setIdle(false);
        }
        if (watch == idleWatch_) {
            setIdle(true);
            return awaitInput();
        }
        // The number of this watch may still be on the way.
        if (askedForInput_) early_.insert(watch);
    }

    Q_SLOT void ownerChanged(const QString&, const QString&, const QString& now) {
        ++generation_;
        idleWatch_.reset();
        active_.reset();
        setIdle(false);
        if (now.isEmpty()) return setPresent(false);
        ask();
    }

  private:
    // On the queue.
    void subscribe(QDBusConnection& bus) {
        bus.connect(kBusName, kBusPath, kBusName, kOwnerChanged, {kService}, QStringLiteral("sss"),
                    this, SLOT(ownerChanged(QString, QString, QString)));
        bus.connect(kService, kPath, kService, QStringLiteral("WatchFired"), this,
                    SLOT(fired(uint)));
    }

    // The number in the answer; none in an error or in an answer to an earlier owner.
    [[nodiscard]] std::optional<uint> numberIn(const QDBusMessage& answer, int generation) const {
        if (generation != generation_ || answer.type() != QDBusMessage::ReplyMessage ||
            answer.signature() != QLatin1String("u"))
            return std::nullopt;
        return answer.arguments().first().toUInt();
    }

    void ask() {
        QDBusMessage add = method("AddIdleWatch");
        add << milliseconds_;
        bus_.call(add, [this, generation = generation_](const QDBusMessage& answer) {
            if (generation != generation_) return;
            idleWatch_ = numberIn(answer, generation);
            setPresent(idleWatch_.has_value());
        });
    }

    void awaitInput() {
        askedForInput_ = true;
        early_.clear();
        bus_.call(method("AddUserActiveWatch"),
                  [this, generation = generation_](const QDBusMessage& answer) {
                      askedForInput_ = false;
                      active_ = numberIn(answer, generation);
                      if (active_ && early_.contains(*active_)) fired(*active_);
                  });
    }

    void setPresent(bool present) {
        if (std::exchange(present_, present) != present) actions_.present(present);
    }
    void setIdle(bool idle) {
        if (std::exchange(idle_, idle) != idle) actions_.idle(idle);
    }

    const quint64 milliseconds_;
    const Actions actions_;
    std::optional<bool> present_;
    bool idle_ = false;
    bool askedForInput_ = false;
    int generation_ = 0;  // of the monitor's owner
    std::optional<uint> idleWatch_, active_;
    QSet<uint> early_;
    BusLink bus_;
};

MutterIdle::MutterIdle(const QString& busAddress, double seconds, Actions actions)
    : link_(std::make_unique<Link>(busAddress, seconds, std::move(actions))) {}

MutterIdle::~MutterIdle() = default;

}  // namespace platform

#include "MutterIdle.moc"
