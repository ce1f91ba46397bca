// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "tests/support/Until.h"

namespace wltest {

// A real compositor with a layer shell that is built on none of the others' libraries. One
// output of 640 × 480 and no screen, drawn by the processor. Ends with the object.
class Kwin {
  public:
    explicit Kwin(const QString& bus) {
        const QString installed = QStandardPaths::findExecutable(QStringLiteral("kwin_wayland"));
        if (installed.isEmpty()) {
            reason_ = "kwin_wayland is not installed";
            return;
        }
        // A container refuses the capabilities of the installed file, and the program wants
        // that name.
        const QString program = folder_.filePath(QStringLiteral("kwin_wayland"));
        QFile::copy(installed, program);
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
        env.insert(QStringLiteral("HOME"), folder_.path());
        env.insert(QStringLiteral("DBUS_SESSION_BUS_ADDRESS"), bus);
        env.insert(QStringLiteral("KWIN_COMPOSE"), QStringLiteral("Q"));
        for (const char* other : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(QLatin1String(other));
        process_.setProcessEnvironment(env);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(program, {QStringLiteral("--virtual"), QStringLiteral("--width"),
                                 QStringLiteral("640"), QStringLiteral("--height"),
                                 QStringLiteral("480"), QStringLiteral("--no-lockscreen"),
                                 QStringLiteral("--socket"), QStringLiteral("wayland-1")});
        until([this] {
            return QFile::exists(address()) || process_.state() == QProcess::NotRunning;
        });
        running_ = QFile::exists(address());
        if (!running_)
            reason_ =
                "kwin_wayland does not start here: " + process_.readAll().left(500).toStdString();
    }
    ~Kwin() {
        process_.kill();
        process_.waitForFinished();
    }
    Kwin(const Kwin&) = delete;
    Kwin& operator=(const Kwin&) = delete;

    [[nodiscard]] bool isRunning() const { return running_; }
    // Why it is not.
    [[nodiscard]] const std::string& reason() const { return reason_; }
    // The value for WAYLAND_DISPLAY.
    [[nodiscard]] QString address() const { return folder_.filePath(QStringLiteral("wayland-1")); }

  private:
    QTemporaryDir folder_;
    QProcess process_;
    bool running_ = false;
    std::string reason_;
};

}  // namespace wltest
