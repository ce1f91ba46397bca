// SPDX-License-Identifier: MIT
// The built program, run as a user or a host would.
#pragma once

#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <functional>

#include "tests/support/Paden.h"
#include "tests/support/Until.h"
#include "tests/support/Xvfb.h"

namespace brixtel {

inline QString programmaPad() {
    return QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-saver");
}
inline QString bureauPad() {
    return QStringLiteral(BRIXTEL_BUILD_DIR "/bin/brixtel-bureau");
}

// With a configuration of its own and, unless a bus is given, no session bus.
class Programma {
  public:
    explicit Programma(const QString& display = {}, const QString& pad = programmaPad())
        : pad_(pad) {
        omgeving_.insert(QStringLiteral("PATH"), qEnvironmentVariable("PATH"));
        omgeving_.insert(QStringLiteral("HOME"), map_.path());
        omgeving_.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        omgeving_.insert(QStringLiteral("LIBGL_ALWAYS_SOFTWARE"), QStringLiteral("1"));
        for (const char* naam : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
            if (qEnvironmentVariableIsSet(naam))
                omgeving_.insert(QLatin1String(naam), qEnvironmentVariable(naam));
        if (!display.isEmpty()) omgeving_.insert(QStringLiteral("DISPLAY"), display);
    }
    ~Programma() {
        if (proces_.state() == QProcess::NotRunning) return;
        proces_.kill();
        proces_.waitForFinished();
    }

    void zet(const QString& naam, const QString& waarde) { omgeving_.insert(naam, waarde); }

    // Sets what the new process does before it becomes the program.
    void wijzig(const std::function<void()>& voorProgramma) {
        proces_.setChildProcessModifier(voorProgramma);
    }

    void start(const QStringList& argumenten) { startDoor({}, argumenten); }
    // By another program, which is handed it with its arguments.
    void startDoor(const QStringList& ander, const QStringList& argumenten) {
        QStringList woorden = ander + QStringList{pad_} + argumenten;
        proces_.setProcessEnvironment(omgeving_);
        const QString eerste = woorden.takeFirst();
        proces_.start(eerste, woorden);
        proces_.waitForStarted();
    }
    // Whether the program ended before the deadline.
    bool wacht(int milliseconden = 20'000) {
        return until([this] { return !loopt(); }, milliseconden);
    }
    // Runs it to its end.
    void draai(const QStringList& argumenten) {
        start(argumenten);
        wacht();
    }

    [[nodiscard]] bool loopt() const { return proces_.state() != QProcess::NotRunning; }
    [[nodiscard]] bool doorSignaal() const { return proces_.exitStatus() == QProcess::CrashExit; }
    // The exit status, or the signal's number.
    [[nodiscard]] int uitgang() const { return proces_.exitCode(); }
    [[nodiscard]] QByteArray uit() { return proces_.readAllStandardOutput(); }
    [[nodiscard]] QByteArray fouten() { return proces_.readAllStandardError(); }
    [[nodiscard]] qint64 nummer() const { return proces_.processId(); }
    [[nodiscard]] QString map() const { return map_.path(); }

  private:
    const QString pad_;
    QTemporaryDir map_;
    QProcessEnvironment omgeving_;
    QProcess proces_;
};

// The share of a picture's pixels that are lit in green.
inline double aandeelGroen(const QImage& beeld) {
    if (beeld.isNull()) return 0.0;
    qint64 groen = 0;
    for (int y = 0; y < beeld.height(); ++y)
        for (int x = 0; x < beeld.width(); ++x) {
            const QRgb pixel = beeld.pixel(x, y);
            if (qGreen(pixel) > 60 && qGreen(pixel) > qRed(pixel) && qGreen(pixel) > qBlue(pixel))
                ++groen;
        }
    return static_cast<double>(groen) / (1.0 * beeld.width() * beeld.height());
}

// The rain lights several hundredths of a screen.
inline bool isRegen(const QImage& beeld) {
    const double aandeel = aandeelGroen(beeld);
    return aandeel > 0.02 && aandeel < 0.5;
}

}  // namespace brixtel
