// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "tests/support/Until.h"

namespace wltest {

// A real compositor without a layer shell, with one output of 640 × 480 and no screen. Ends
// with the object.
class Weston {
  public:
    explicit Weston(const QStringList& more = {QStringLiteral("--use-pixman")}) {
        if (QStandardPaths::findExecutable(QStringLiteral("weston")).isEmpty()) {
            reason_ = "weston is not installed";
            return;
        }
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
        process_.setProcessEnvironment(env);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(QStringLiteral("weston"),
                       QStringList{QStringLiteral("--backend=headless-backend.so"),
                                   QStringLiteral("--socket=wayland-1"),
                                   QStringLiteral("--width=640"), QStringLiteral("--height=480")} +
                           more);
        until([this] {
            return QFile::exists(address()) || process_.state() == QProcess::NotRunning;
        });
        running_ = QFile::exists(address());
        if (!running_)
            reason_ = "weston does not start here: " + process_.readAll().left(500).toStdString();
    }
    ~Weston() {
        process_.kill();
        process_.waitForFinished();
    }
    Weston(const Weston&) = delete;
    Weston& operator=(const Weston&) = delete;

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
