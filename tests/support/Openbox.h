// SPDX-License-Identifier: MIT
// A real window manager for a test's display.
#pragma once

#include <QByteArray>
#include <QProcess>
#include <QString>

#include "tests/support/Until.h"

class Openbox {
  public:
    // An empty display means the environment's.
    explicit Openbox(QString display = {}) : display_(std::move(display)) {
        static int rounds = 0;
        word_ = QStringLiteral("ready%1").arg(++rounds);
        // Openbox may never show a window that appears while it starts, and
        // sets its properties on the root window before it is ready.
        run(process_, QStringLiteral("openbox"),
            {QStringLiteral("--startup"),
             QStringLiteral("xprop -root -f _TEST_WM 8s -set _TEST_WM ") + word_});
    }
    ~Openbox() { stop(); }
    Openbox(const Openbox&) = delete;
    Openbox& operator=(const Openbox&) = delete;

    // Waits until openbox manages windows.
    [[nodiscard]] bool isReady() const {
        const auto said = [this] {
            QProcess xprop;
            run(xprop, QStringLiteral("xprop"),
                {QStringLiteral("-root"), QStringLiteral("_TEST_WM")});
            xprop.waitForFinished(20'000);
            return xprop.readAllStandardOutput().contains('"' + word_.toLatin1() + '"');
        };
        return until(said, 20'000);
    }
    void stop() {
        if (process_.state() == QProcess::NotRunning) return;
        process_.terminate();
        if (!process_.waitForFinished(10'000)) process_.kill();
        process_.waitForFinished(10'000);
    }

  private:
    void run(QProcess& process, const QString& name, const QStringList& words) const {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!display_.isEmpty()) environment.insert(QStringLiteral("DISPLAY"), display_);
        process.setProcessEnvironment(environment);
        process.start(name, words);
        process.waitForStarted(10'000);
    }

    const QString display_;
    QString word_;
    QProcess process_;
};
