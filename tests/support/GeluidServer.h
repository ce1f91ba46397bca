// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <span>

#include "tests/support/Until.h"

namespace steun {

// A PulseAudio server for one test, by default with a null output. Uses none of
// the machine's sound, and ends with the object.
class GeluidServer {
  public:
    static QStringList nulUitgang(const QString& naam) {
        return {QStringLiteral("-L"), QStringLiteral("module-null-sink sink_name=") + naam};
    }

    explicit GeluidServer(const QStringList& modules = nulUitgang(QStringLiteral("een"))) {
        omgeving_.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
        omgeving_.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        for (const char* naam : {"HOME", "XDG_RUNTIME_DIR", "XDG_CONFIG_HOME"})
            omgeving_.insert(QLatin1String(naam), map_.path());
        omgeving_.insert(QStringLiteral("PULSE_SERVER"), adres());
        start(modules);
    }
    ~GeluidServer() { stop(); }

    [[nodiscard]] QString adres() const {
        return QStringLiteral("unix:") + QString::fromStdString(socket());
    }
    // The path of its socket.
    [[nodiscard]] std::string socket() const {
        return map_.filePath(QStringLiteral("native")).toStdString();
    }
    [[nodiscard]] bool loopt() { return !pactl({QStringLiteral("info")}).isEmpty(); }

    void start(const QStringList& modules = nulUitgang(QStringLiteral("een"))) {
        server_.setProcessEnvironment(omgeving_);
        server_.setStandardErrorFile(QProcess::nullDevice());
        const QString deur =
            QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=") +
            map_.filePath(QStringLiteral("native"));
        server_.start(
            QStringLiteral("pulseaudio"),
            QStringList{QStringLiteral("-n"), QStringLiteral("--daemonize=no"),
                        QStringLiteral("--use-pid-file=no"), QStringLiteral("--exit-idle-time=-1"),
                        QStringLiteral("--realtime=no"), QStringLiteral("--high-priority=no"),
                        QStringLiteral("-L"), deur} +
                modules);
        server_.waitForStarted();
        until([this] { return server_.state() == QProcess::NotRunning || loopt(); });
    }
    // Ends the server as a crash does.
    void stop() {
        server_.kill();
        server_.waitForFinished();
        QFile::remove(map_.filePath(QStringLiteral("native")));
    }

    // The output of pactl; empty on failure.
    QString pactl(const QStringList& woorden) {
        QProcess proces;
        proces.setProcessEnvironment(omgeving_);
        proces.setStandardErrorFile(QProcess::nullDevice());
        proces.start(QStringLiteral("pactl"), woorden);
        if (!proces.waitForFinished(10'000) || proces.exitCode() != 0) return {};
        return QString::fromUtf8(proces.readAllStandardOutput());
    }

    // Plays samples of one channel into the default output, with ample
    // buffering, and waits for the end.
    bool speel(std::span<const float> monsters, double tempo) {
        QFile bestand(map_.filePath(QStringLiteral("spoor")));
        if (!bestand.open(QIODevice::WriteOnly)) return false;
        bestand.write(reinterpret_cast<const char*>(monsters.data()),
                      static_cast<qint64>(monsters.size_bytes()));
        bestand.close();
        QProcess proces;
        proces.setProcessEnvironment(omgeving_);
        proces.start(QStringLiteral("pacat"),
                     {QStringLiteral("--playback"), QStringLiteral("--raw"),
                      QStringLiteral("--format=float32ne"), QStringLiteral("--channels=1"),
                      QStringLiteral("--rate=%1").arg(tempo), QStringLiteral("--latency-msec=1500"),
                      bestand.fileName()});
        return until([&] { return proces.state() == QProcess::NotRunning; }, 60'000) &&
               proces.exitCode() == 0;
    }

  private:
    QTemporaryDir map_;
    QProcessEnvironment omgeving_;
    QProcess server_;
};

}  // namespace steun
