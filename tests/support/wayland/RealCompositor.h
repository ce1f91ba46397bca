// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include "tests/support/Until.h"

namespace wltest {

// A compositor of somebody else's, without a screen, in a folder of its own. Its process ends
// with the object.
class RealCompositor {
  public:
    RealCompositor(const RealCompositor&) = delete;
    RealCompositor& operator=(const RealCompositor&) = delete;

    [[nodiscard]] bool isRunning() const { return running_; }
    // The reason why it is not.
    [[nodiscard]] const std::string& reason() const { return reason_; }
    // The value for WAYLAND_DISPLAY.
    [[nodiscard]] QString address() const { return folder_.filePath(QStringLiteral("wayland-1")); }

  protected:
    RealCompositor() = default;
    ~RealCompositor() {
        process_.kill();
        process_.waitForFinished();
    }

    // The path of the installed program; empty, with the reason, where there is none.
    [[nodiscard]] QString installed(const char* program) {
        const QString path = QStandardPaths::findExecutable(QLatin1String(program));
        if (path.isEmpty()) reason_ = std::string(program) + " is not installed";
        return path;
    }
    // The compositor's environment, with no other display in it.
    [[nodiscard]] QProcessEnvironment environment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
        for (const char* other : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            env.remove(QLatin1String(other));
        return env;
    }
    // Waits until the compositor is there or has ended.
    void start(const QString& program, const QStringList& arguments,
               const QProcessEnvironment& environment) {
        process_.setProcessEnvironment(environment);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        process_.start(program, arguments);
        until([this] {
            return QFile::exists(address()) || process_.state() == QProcess::NotRunning;
        });
        running_ = QFile::exists(address());
        if (!running_)
            reason_ = program.toStdString() +
                      " does not start here: " + process_.readAll().left(500).toStdString();
    }
    [[nodiscard]] const QTemporaryDir& folder() const { return folder_; }

  private:
    QTemporaryDir folder_;
    QProcess process_;
    bool running_ = false;
    std::string reason_;
};

}  // namespace wltest
