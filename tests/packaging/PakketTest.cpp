// SPDX-License-Identifier: MIT
// The package as people get it: made, installed into a root of its own, run
// from there, and removed again.
#include <gtest/gtest.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>

#include "tests/hosts/saver/Programma.h"
#include "tests/support/Paden.h"

namespace {

constexpr int kGeduld = 100'000;  // milliseconds

struct Gedraaid {
    int uitgang;
    QByteArray uit;
    QByteArray fouten;
};

Gedraaid draai(const QStringList& woorden, const QStringList& omgeving) {
    QProcess proces;
    proces.setEnvironment(omgeving);
    proces.setWorkingDirectory(QStringLiteral("/"));
    proces.start(woorden.first(), woorden.mid(1));
    if (!proces.waitForFinished(kGeduld)) return {-1, {}, proces.errorString().toUtf8()};
    const int uitgang = proces.exitStatus() == QProcess::NormalExit ? proces.exitCode() : -1;
    return {uitgang, proces.readAllStandardOutput(), proces.readAllStandardError()};
}

class Pakket : public testing::Test {
  protected:
    QTemporaryDir map;
    const QString wortel = map.filePath(QStringLiteral("wortel"));
    const QString bouwmap = QStringLiteral(BRIXTEL_BUILD_DIR);

    [[nodiscard]] QStringList omgeving() const {
        QStringList alles{QStringLiteral("PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:"
                                         "/sbin:/bin"),
                          QStringLiteral("HOME=") + map.path(), QStringLiteral("LANG=C.UTF-8"),
                          QStringLiteral("LIBGL_ALWAYS_SOFTWARE=1")};
        for (const char* naam : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
            if (qEnvironmentVariableIsSet(naam))
                alles << QLatin1String(naam) + u'=' + qEnvironmentVariable(naam);
        return alles;
    }

    // Everything in the root but the administration of packages.
    [[nodiscard]] QStringList inhoud() const {
        QStringList alles;
        QDirIterator lopen(wortel,
                           QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (lopen.hasNext()) {
            const QString naam = lopen.next().mid(wortel.size());
            if (!naam.startsWith(QLatin1String("/var"))) alles << naam;
        }
        alles.sort();
        return alles;
    }

    QString maak() {
        const Gedraaid gedraaid =
            draai({QStringLiteral(BRIXTEL_CPACK), QStringLiteral("-G"), QStringLiteral("DEB"),
                   QStringLiteral("--config"), bouwmap + QStringLiteral("/CPackConfig.cmake"),
                   QStringLiteral("-B"), map.filePath(QStringLiteral("deb")),
                   // Quick rather than small.
                   QStringLiteral("-D"), QStringLiteral("CPACK_DEBIAN_COMPRESSION_TYPE=gzip")},
                  omgeving());
        EXPECT_EQ(gedraaid.uitgang, 0) << gedraaid.uit.constData() << gedraaid.fouten.constData();
        const QDir deb(map.filePath(QStringLiteral("deb")));
        const QStringList pakketten = deb.entryList({QStringLiteral("*.deb")});
        EXPECT_EQ(pakketten.size(), 1);
        return pakketten.isEmpty() ? QString() : deb.filePath(pakketten.first());
    }

    // Runs dpkg on the root, for which it need not be root.
    Gedraaid dpkg(const QStringList& woorden) {
        return draai(
            QStringList{QStringLiteral("fakeroot"), QStringLiteral("dpkg"),
                        QStringLiteral("--root=") + wortel, QStringLiteral("--force-depends")} +
                woorden,
            omgeving());
    }

    void SetUp() override {
        for (const char* deel : {"info", "updates"})
            ASSERT_TRUE(
                QDir().mkpath(wortel + QStringLiteral("/var/lib/dpkg/") + QLatin1String(deel)));
        QFile stand(wortel + QStringLiteral("/var/lib/dpkg/status"));
        ASSERT_TRUE(stand.open(QIODevice::WriteOnly));
    }

    void installeer(const QString& pakket) {
        const Gedraaid gedraaid = dpkg({QStringLiteral("--install"), pakket});
        ASSERT_EQ(gedraaid.uitgang, 0) << gedraaid.fouten.constData();
    }

    // The packager finds the linked libraries; libraries loaded by name are named.
    void verwachtAfhankelijkheden(const QString& pakket) const {
        const auto veld = [&](const char* naam) {
            return draai({QStringLiteral("dpkg-deb"), QStringLiteral("--field"), pakket,
                          QLatin1String(naam)},
                         omgeving())
                .uit;
        };
        EXPECT_EQ(veld("Package"), "brixtel\n");
        EXPECT_EQ(veld("Version"), BRIXTEL_VERSION "\n");
        for (const char* naam :
             {"libqt6gui6", "libqt6widgets6", "libqt6quick6", "libegl1", "libgl1",
              "fonts-dejavu-core", "qml6-module-qtquick,", "qml6-module-qtqml,",
              "qml6-module-qtqml-models", "qml6-module-qtqml-workerscript"})
            EXPECT_TRUE(veld("Depends").contains(naam)) << naam;
        EXPECT_TRUE(veld("Recommends").contains("lsof"));
    }

    [[nodiscard]] Gedraaid programma(const char* waar, const QStringList& woorden) const {
        return draai(QStringList{wortel + QLatin1String(waar)} + woorden,
                     omgeving() << QStringLiteral("LD_DEBUG=files"));
    }

    void verwachtBestanden() const {
        const QStringList er = inhoud();
        for (const char* naam :
             {"/usr/bin/brixtel-saver", "/usr/bin/brixtel-bureau",
              "/usr/libexec/xscreensaver/brixtel-saver",
              "/usr/share/xscreensaver/config/brixtel-saver.xml",
              "/usr/share/applications/nl.groenlicht.brixtel.saver.desktop",
              "/usr/share/applications/nl.groenlicht.brixtel.bureau.desktop",
              "/usr/share/dbus-1/interfaces/nl.groenlicht.brixtel.Bureau.xml",
              "/usr/share/man/man1/brixtel-bureau.1.gz",
              "/usr/share/applications/screensavers/brixtel-saver.desktop",
              "/usr/share/applications/screensavers/brixtel-bol.desktop",
              "/usr/share/metainfo/nl.groenlicht.brixtel.saver.metainfo.xml",
              "/usr/share/icons/hicolor/16x16/apps/brixtel-saver.png",
              "/usr/share/icons/hicolor/512x512/apps/brixtel-saver.png",
              "/usr/share/man/man1/brixtel-saver.1.gz", "/usr/share/man/nl/man1/brixtel-saver.1.gz",
              "/usr/share/bash-completion/completions/brixtel-saver",
              "/usr/share/doc/brixtel/copyright", "/usr/share/doc/brixtel/changelog.gz"})
            EXPECT_TRUE(er.contains(QLatin1String(naam))) << naam;
        for (const char* naam :
             {"BrixtelSaver.so", "BrixtelInstellingen.so", "libbrixtel-saver_sheet.so",
              "libbrixtel-controls.so", "qml/Brixtel/Controls/qmldir",
              "qml/Brixtel/Controls/libcontrolsplugin.so"})
            EXPECT_TRUE(
                er.contains(QLatin1String("/usr/" BRIXTEL_LIB "/") + QLatin1String(naam)))
                << naam;
    }

    // Every file of the project comes from where the package installs it.
    void verwachtBlad() const {
        const QString beeld = map.filePath(QStringLiteral("blad.png"));
        const Gedraaid gedraaid =
            programma("/usr/bin/brixtel-saver", {QStringLiteral("--instellingen=") + beeld});
        EXPECT_EQ(gedraaid.uitgang, 0) << gedraaid.fouten.right(2000).constData();
        EXPECT_TRUE(gedraaid.fouten.contains("BrixtelInstellingen.so"));
        EXPECT_FALSE(gedraaid.fouten.contains(QFile::encodeName(bouwmap)));
        EXPECT_EQ(QImage(beeld).size(), QSize(380, 286));
    }

    // The lit share of a still of the globe, drawn by the installed program. Checks that
    // every library of ours came from the installed folder.
    [[nodiscard]] double groenVanBol(const char* waar) const {
        const QString beeld = map.filePath(QStringLiteral("bol.png"));
        QFile::remove(beeld);
        const Gedraaid gedraaid =
            programma(waar, {QStringLiteral("--plaatje=") + beeld, QStringLiteral("--keuze=bol"),
                             QStringLiteral("--maat=240x240"), QStringLiteral("--zaad=1")});
        EXPECT_EQ(gedraaid.uitgang, 0) << gedraaid.fouten.right(2000).constData();
        EXPECT_TRUE(gedraaid.fouten.contains("BrixtelSaver.so"));
        EXPECT_FALSE(gedraaid.fouten.contains(QFile::encodeName(bouwmap)));
        const QImage gelezen(beeld);
        EXPECT_EQ(gelezen.size(), QSize(240, 240));
        return brixtel::aandeelGroen(gelezen);
    }
};

TEST_F(Pakket, InstallsRunsFromWhereItIsAndGoesWithoutATrace) {
    ASSERT_TRUE(inhoud().isEmpty());
    const QString pakket = maak();
    verwachtAfhankelijkheden(pakket);
    installeer(pakket);
    verwachtBestanden();
    EXPECT_EQ(programma("/usr/bin/brixtel-saver", {QStringLiteral("--versie")}).uit,
              "brixtel-saver " BRIXTEL_VERSION "\n");
    verwachtBlad();

    const double metLand = groenVanBol("/usr/bin/brixtel-saver");
    EXPECT_GT(metLand, 0.02);
    EXPECT_EQ(groenVanBol("/usr/libexec/xscreensaver/brixtel-saver"), metLand);
    // The program reads the resources beside its libraries and no others.
    const QString kaart =
        wortel + QStringLiteral("/usr/" BRIXTEL_LIB "/resources/worldmap@2x.png");
    ASSERT_TRUE(QFile::remove(kaart));
    EXPECT_LT(groenVanBol("/usr/bin/brixtel-saver"), metLand);

    const Gedraaid weg = dpkg({QStringLiteral("--purge"), QStringLiteral("brixtel")});
    EXPECT_EQ(weg.uitgang, 0) << weg.fouten.constData();
    EXPECT_TRUE(inhoud().isEmpty()) << qPrintable(inhoud().join(u'\n'));
}

}  // namespace
