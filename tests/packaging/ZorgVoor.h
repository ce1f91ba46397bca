// SPDX-License-Identifier: MIT
// A machine that lacks something, for the commands at the root: every program they call is a
// stand-in, in a folder that is the whole PATH.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

inline QString tekstVan(const QString& pad) {
    QFile bestand(pad);
    EXPECT_TRUE(bestand.open(QIODevice::ReadOnly)) << qPrintable(pad);
    return QString::fromUtf8(bestand.readAll());
}

inline void schrijf(const QString& pad, const QByteArray& tekst) {
    QFile bestand(pad);
    ASSERT_TRUE(bestand.open(QIODevice::WriteOnly | QIODevice::Truncate)) << qPrintable(pad);
    bestand.write(tekst);
}

class ZorgVoor : public testing::Test {
  protected:
    QTemporaryDir map;
    // With a space in it, as people have them.
    const QString boom = map.filePath(QStringLiteral("een boom"));
    const QString pad = map.filePath(QStringLiteral("pad"));

    void SetUp() override {
        ASSERT_TRUE(QDir().mkpath(boom + QStringLiteral("/packaging")));
        ASSERT_TRUE(QDir().mkpath(pad));
        for (const char* naam : {"run", "test", "packaging/zorg-voor.sh", "packaging/benodigd"})
            ASSERT_TRUE(QFile::copy(QStringLiteral(BRIXTEL_SOURCE_DIR "/") + QLatin1String(naam),
                                    boom + u'/' + QLatin1String(naam)));
        for (const char* naam : {"bash", "env", "sed", "rm", "cat", "tee", "mktemp", "mkdir",
                                 "grep", "dirname", "readlink"})
            ASSERT_TRUE(QFile::link(QStandardPaths::findExecutable(QLatin1String(naam)),
                                    pad + u'/' + QLatin1String(naam)))
                << naam;
        zet("id", "echo 0");
    }

    // Puts a program on the PATH; the log gets what it is called with.
    void zet(const QString& naam, const QByteArray& doet) {
        const QString bestand = pad + u'/' + naam;
        schrijf(bestand, "#!" + QFile::encodeName(pad) + "/bash\n" +
                             "echo \"${0##*/} $*\" >>\"$LOGBOEK\"\n" + doet + '\n');
        QFile::setPermissions(bestand, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                           QFileDevice::ExeOwner | QFileDevice::ReadOther |
                                           QFileDevice::ExeOther);
    }
    void zet(const char* naam, const char* doet) { zet(QLatin1String(naam), QByteArray(doet)); }

    void isDebian(const char* geinstalleerd) {
        zet("dpkg-query", geinstalleerd);
        zet("apt-get", "exit 0");
    }

    // Runs the words in the tree; `fouten` has what was said, in lines.
    int draai(const QStringList& woorden) {
        QProcess proces;
        proces.setWorkingDirectory(boom);
        proces.setEnvironment(
            {QStringLiteral("PATH=") + pad, QStringLiteral("LOGBOEK=") + logboek_});
        proces.start(woorden.first(), woorden.mid(1));
        EXPECT_TRUE(proces.waitForFinished(60'000)) << qPrintable(proces.errorString());
        uit = QString::fromUtf8(proces.readAllStandardOutput());
        fouten = QString::fromUtf8(proces.readAllStandardError()).split(u'\n', Qt::SkipEmptyParts);
        return proces.exitStatus() == QProcess::NormalExit ? proces.exitCode() : -1;
    }
    int voer(const QString& regel) {
        return draai({QStringLiteral("bash"), QStringLiteral("-c"),
                      QStringLiteral("set -euo pipefail; . packaging/zorg-voor.sh; ") + regel});
    }
    [[nodiscard]] QString gebeurd() const {
        return QFile::exists(logboek_) ? tekstVan(logboek_) : QString();
    }

    QString uit;
    QStringList fouten;

  private:
    const QString logboek_ = map.filePath(QStringLiteral("logboek"));
};
