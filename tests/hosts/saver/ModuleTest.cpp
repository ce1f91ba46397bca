// SPDX-License-Identifier: MIT
// The program whole, where a module is missing or is none.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <optional>

#include "tests/hosts/saver/Programma.h"

using brixtel::Programma;

namespace {

const QString kLib = QStringLiteral(BRIXTEL_LIB);

// The program with a library folder in which one file differs.
class ZonderModule : public testing::Test {
  protected:
    QTemporaryDir boom_;

    // Lays out the tree: all libraries but `anders`, which has the given content or is absent.
    void legUit(const QString& anders, const std::optional<QByteArray>& inhoud) const {
        const QDir boom(boom_.path());
        ASSERT_TRUE(boom.mkpath(QStringLiteral("bin")) && boom.mkpath(kLib));
        ASSERT_TRUE(QFile::copy(brixtel::programmaPad(), programma()));
        const QDir lib(QStringLiteral(BRIXTEL_LIB_DIR));
        for (const QString& naam : lib.entryList(QDir::NoDotAndDotDot | QDir::AllEntries))
            if (naam != anders) {
                ASSERT_TRUE(QFile::link(lib.filePath(naam), boom.filePath(kLib + u'/' + naam)));
            }
        if (!inhoud) return;
        QFile bestand(boom.filePath(kLib + u'/' + anders));
        ASSERT_TRUE(bestand.open(QIODevice::WriteOnly));
        bestand.write(*inhoud);
    }
    [[nodiscard]] QString programma() const {
        return boom_.filePath(QStringLiteral("bin/brixtel-saver"));
    }
    // The line that it ends with; empty where it ends well.
    [[nodiscard]] QByteArray regel(const QString& opdracht) const {
        QProcess proces;
        QProcessEnvironment omgeving;
        omgeving.insert(QStringLiteral("HOME"), boom_.path());
        omgeving.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        for (const char* naam : {"ASAN_OPTIONS", "LSAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"})
            if (qEnvironmentVariableIsSet(naam))
                omgeving.insert(QLatin1String(naam), qEnvironmentVariable(naam));
        proces.setProcessEnvironment(omgeving);
        proces.start(programma(), opdracht.split(u' '));
        EXPECT_TRUE(until([&] { return proces.state() == QProcess::NotRunning; }));
        EXPECT_EQ(proces.exitStatus(), QProcess::NormalExit);
        const QByteArray fouten = proces.readAllStandardError();
        EXPECT_EQ(proces.exitCode(), fouten.isEmpty() ? 0 : 1) << fouten.constData();
        return fouten;
    }
    [[nodiscard]] QString plaatje() const {
        return QStringLiteral("--keuze=regen --maat=64x48 --plaatje=") +
               boom_.filePath(QStringLiteral("x.png"));
    }
    [[nodiscard]] QString blad() const {
        return QStringLiteral("--instellingen=") + boom_.filePath(QStringLiteral("x.png"));
    }
};

const char* const kSaver = "brixtel-saver: de module BrixtelSaver.so ontbreekt of is onbruikbaar\n";
const char* const kBlad = "brixtel-saver: de module BrixtelInstellingen.so ontbreekt\n";

TEST_F(ZonderModule, AllInPlaceItDraws) {
    legUit({}, {});
    EXPECT_EQ(regel(plaatje()), "");
    EXPECT_EQ(regel(blad()), "");
}

TEST_F(ZonderModule, AMissingSaverIsOneLine) {
    legUit(QStringLiteral("BrixtelSaver.so"), {});
    EXPECT_EQ(regel(plaatje()), kSaver);
}

TEST_F(ZonderModule, AFileThatIsNoModuleIsOneLine) {
    legUit(QStringLiteral("BrixtelSaver.so"), QByteArray("geen module"));
    EXPECT_EQ(regel(plaatje()), kSaver);
}

TEST_F(ZonderModule, AnotherModuleInItsPlaceIsOneLine) {
    QFile ander(QStringLiteral(BRIXTEL_LIB_DIR "/BrixtelInstellingen.so"));
    ASSERT_TRUE(ander.open(QIODevice::ReadOnly));
    legUit(QStringLiteral("BrixtelSaver.so"), ander.readAll());
    EXPECT_EQ(regel(plaatje()), kSaver);
}

TEST_F(ZonderModule, AMissingSheetIsOneLineAndTheSaverStillDraws) {
    legUit(QStringLiteral("BrixtelInstellingen.so"), {});
    EXPECT_EQ(regel(blad()), kBlad);
    EXPECT_EQ(regel(plaatje()), "");
}

TEST_F(ZonderModule, AMissingWindowSystemIsMissedInItsOwnSessionsAlone) {
    legUit(QStringLiteral("libbrixtel-platform_window_wayland.so"), {});
    EXPECT_EQ(regel(plaatje()), "");
}

}  // namespace
