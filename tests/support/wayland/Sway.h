// SPDX-License-Identifier: MIT
#pragma once

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <algorithm>
#include <cstring>

#include "tests/support/Until.h"

namespace wltest {

// A real compositor without a screen, with outputs of 640 × 480 beside one another
// and one colour as the background. It refuses root, and then runs in a user
// namespace, as the first user that every system names: its X server lets in the
// clients of a user with a name. Ends with the object.
class Sway {
  public:
    static constexpr QRgb kBackground = 0xff203040;

    explicit Sway(int outputs = 1, const QByteArray& more = {}) {
        for (const char* needed : {"sway", "grim", "unshare"})
            if (QStandardPaths::findExecutable(QLatin1String(needed)).isEmpty()) {
                reason_ = QStringLiteral("%1 is not installed").arg(QLatin1String(needed));
                return;
            }
        writeConfig(outputs, more);
        QProcessEnvironment env = environment();
        env.insert(QStringLiteral("WLR_BACKENDS"), QStringLiteral("headless"));
        env.insert(QStringLiteral("WLR_HEADLESS_OUTPUTS"), QString::number(outputs));
        env.insert(QStringLiteral("WLR_LIBINPUT_NO_DEVICES"), QStringLiteral("1"));
        env.insert(QStringLiteral("WLR_RENDERER"), QStringLiteral("pixman"));
        env.remove(QStringLiteral("WAYLAND_DISPLAY"));
        process_.setProcessEnvironment(env);
        process_.setProcessChannelMode(QProcess::MergedChannels);
        QStringList words{QStringLiteral("sway"), QStringLiteral("-c"), path("config")};
        if (getuid() == 0)
            words = QStringList{QStringLiteral("unshare"), QStringLiteral("-U"),
                                QStringLiteral("--map-user=1"), QStringLiteral("--map-group=1")} +
                    words;
        process_.start(words.takeFirst(), words);
        running_ = until([this] { return connectIpc() || hasEnded(); }) && !hasEnded();
        if (!running_)
            reason_ = QStringLiteral("sway does not start here: ") +
                      QString::fromLocal8Bit(process_.readAll().left(500));
    }
    ~Sway() {
        process_.kill();
        process_.waitForFinished();
        if (ipc_ >= 0) close(ipc_);
    }
    Sway(const Sway&) = delete;
    Sway& operator=(const Sway&) = delete;

    [[nodiscard]] bool isRunning() const { return running_; }
    // Why it is not.
    [[nodiscard]] std::string reason() const { return reason_.toStdString(); }

    [[nodiscard]] qint64 process() const { return process_.processId(); }

    // The value for WAYLAND_DISPLAY, wherever the program's own folder is.
    [[nodiscard]] QString address() const { return path("wayland-1"); }
    [[nodiscard]] QProcessEnvironment environment() const {
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        env.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder_.path());
        env.insert(QStringLiteral("WAYLAND_DISPLAY"), QStringLiteral("wayland-1"));
        env.remove(QStringLiteral("DISPLAY"));
        return env;
    }

    // The value for DISPLAY; empty where the compositor has no X server. For one that was
    // started with the line "xwayland force".
    [[nodiscard]] QString xDisplay() {
        QString found;
        until([&] {
            QFile file(path("display"));
            if (file.open(QIODevice::ReadOnly))
                found = QString::fromLatin1(file.readAll()).trimmed();
            return !found.isEmpty();
        });
        return found;
    }

    // Has it do what a line of its configuration would; true if it did.
    bool command(const QByteArray& line) { return ask(0, line).contains("\"success\": true"); }
    // Everything that it shows, in JSON.
    [[nodiscard]] QByteArray tree() { return ask(4, {}); }

    // The picture that an output shows; empty where that could not be had.
    [[nodiscard]] QImage picture(const QString& output = QStringLiteral("HEADLESS-1")) {
        const QString file = path("picture.png");
        QFile::remove(file);
        QProcess grim;
        grim.setProcessEnvironment(environment());
        grim.start(QStringLiteral("grim"), {QStringLiteral("-o"), output, file});
        grim.waitForFinished();
        return QImage(file).convertToFormat(QImage::Format_RGB32);
    }

    // Types a key, as wtype names it; false where there is no wtype. The keyboard is
    // there for a while before and after: a program first has to hear of it.
    bool type(const QString& key) {
        QProcess wtype;
        wtype.setProcessEnvironment(environment());
        wtype.start(QStringLiteral("wtype"),
                    {QStringLiteral("-s"), QStringLiteral("1000"), QStringLiteral("-k"), key,
                     QStringLiteral("-s"), QStringLiteral("200")});
        const bool ended = until([&] { return wtype.state() == QProcess::NotRunning; });
        return ended && wtype.error() != QProcess::FailedToStart && wtype.exitCode() == 0;
    }

  private:
    // Sends a message of that type; the answer, empty where none came.
    QByteArray ask(quint32 type, const QByteArray& text) {
        QByteArray message("i3-ipc");
        const auto size = static_cast<quint32>(text.size());
        message.append(reinterpret_cast<const char*>(&size), sizeof size);
        message.append(reinterpret_cast<const char*>(&type), sizeof type);
        message += text;
        if (write(ipc_, message.constData(), static_cast<std::size_t>(message.size())) < 0)
            return {};
        const QByteArray header = read(kHeader);
        if (header.size() < kHeader) return {};
        quint32 length = 0;
        std::memcpy(&length, header.constData() + kLengthAt, sizeof length);
        return read(static_cast<int>(length));
    }

    [[nodiscard]] QString path(const char* name) const {
        return folder_.filePath(QLatin1String(name));
    }
    [[nodiscard]] bool hasEnded() const { return process_.state() == QProcess::NotRunning; }

    void writeConfig(int outputs, const QByteArray& more) {
        QByteArray lines = "seat seat0 fallback true\ndefault_border none\n";
        for (int i = 1; i <= outputs; ++i)
            lines += "output HEADLESS-" + QByteArray::number(i) + " mode 640x480@60Hz position " +
                     QByteArray::number((i - 1) * 640) + " 0 bg #203040 solid_color\n";
        if (more.contains("xwayland"))
            lines += "exec echo $DISPLAY > " + QFile::encodeName(path("display")) + "\n";
        else
            lines += "xwayland disable\n";
        QFile file(path("config"));
        if (!file.open(QIODevice::WriteOnly) || file.write(lines + more) < 0) qFatal("no config");
    }

    bool connectIpc() {
        const QStringList found =
            QDir(folder_.path())
                .entryList({QStringLiteral("sway-ipc.*")}, QDir::System | QDir::Files);
        if (found.isEmpty() || !QFile::exists(address())) return false;
        const QByteArray socketPath = folder_.filePath(found.first()).toLocal8Bit();
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        std::copy(socketPath.begin(), socketPath.end(), address.sun_path);
        ipc_ = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        return connect(ipc_, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0;
    }

    [[nodiscard]] QByteArray read(int count) const {
        QByteArray bytes;
        while (bytes.size() < count) {
            QByteArray part(count - bytes.size(), '\0');
            const ssize_t got = ::read(ipc_, part.data(), static_cast<std::size_t>(part.size()));
            if (got <= 0) break;
            bytes += part.left(static_cast<int>(got));
        }
        return bytes;
    }

    // An answer begins with six letters, its length and its type.
    static constexpr int kHeader = 14;
    static constexpr int kLengthAt = 6;

    QTemporaryDir folder_;
    QProcess process_;
    int ipc_ = -1;
    bool running_ = false;
    QString reason_;
};

}  // namespace wltest
