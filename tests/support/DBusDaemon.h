// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QString>
#include <functional>

// A message bus for one test.
class DBusDaemon {
  public:
    // `before`, if any, is what the new process does before it becomes the bus.
    explicit DBusDaemon(const std::function<void()>& before = {}) {
        if (before) process_.setChildProcessModifier(before);
        process_.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--session"), QStringLiteral("--nofork"),
                        QStringLiteral("--print-address=1")});
        if (process_.waitForStarted() && process_.waitForReadyRead(10'000))
            address_ = QString::fromLocal8Bit(process_.readLine()).trimmed();
    }
    ~DBusDaemon() { stop(); }

    [[nodiscard]] const QString& address() const { return address_; }

    [[nodiscard]] qint64 process() const { return process_.processId(); }

    // Ends the bus as a crash does; nobody else would remove its socket.
    void stop() {
        process_.kill();
        process_.waitForFinished();
        QFile::remove(path());
    }
    // The path of its socket.
    [[nodiscard]] QString path() const {
        return address_.section(QStringLiteral("unix:path="), 1).section(u',', 0, 0);
    }

    // Sends a signal with dbus-send's arguments; true if dbus-send succeeded.
    [[nodiscard]] bool send(const QStringList& signal) const {
        QProcess sender;
        QStringList words{QStringLiteral("--bus=") + address_, QStringLiteral("--type=signal")};
        sender.start(QStringLiteral("dbus-send"), words + signal);
        return sender.waitForFinished() && sender.exitCode() == 0;
    }

    // Whether any client listens for signals of this member.
    [[nodiscard]] bool isHeard(const char* member) const {
        QProcess asker;
        asker.start(
            QStringLiteral("dbus-send"),
            {QStringLiteral("--bus=") + address_, QStringLiteral("--print-reply"),
             QStringLiteral("--dest=org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
             QStringLiteral("org.freedesktop.DBus.Debug.Stats.GetAllMatchRules")});
        return asker.waitForFinished() &&
               asker.readAllStandardOutput().contains(QByteArray("member='") + member + '\'');
    }

  private:
    QProcess process_;
    QString address_;
};
