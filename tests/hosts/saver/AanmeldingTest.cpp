// SPDX-License-Identifier: MIT
#include "hosts/saver/Aanmelding.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <thread>

using brixtel::Bericht;

namespace {

const QByteArray kOpdracht("brixtel-saver --root");
const QByteArray kTekst("timeout:\t0:10:00\nprograms:\t\\\n  qix --root  \\n\\\n\nlock:\tFalse\n");

// Rights do not hold for root; so for these tests it is somebody.
class AlsGebruiker {
  public:
    AlsGebruiker() {
        if (root_) {
            EXPECT_EQ(seteuid(65534), 0);
        }
    }
    ~AlsGebruiker() {
        if (root_) {
            EXPECT_EQ(seteuid(0), 0);
        }
    }
    AlsGebruiker(const AlsGebruiker&) = delete;
    AlsGebruiker& operator=(const AlsGebruiker&) = delete;

  private:
    const bool root_ = geteuid() == 0;
};

class Aanmelding : public testing::Test {
  protected:
    QTemporaryDir map;

    [[nodiscard]] QString naam() const { return map.filePath(QStringLiteral(".xscreensaver")); }
    [[nodiscard]] QString vorige() const { return naam() + QStringLiteral(".voor-brixtel"); }

    static void schrijf(const QString& bestand, const QByteArray& tekst) {
        QFile doel(bestand);
        ASSERT_TRUE(doel.open(QIODevice::WriteOnly));
        doel.write(tekst);
    }
    static QByteArray lees(const QString& bestand) {
        QFile bron(bestand);
        EXPECT_TRUE(bron.open(QIODevice::ReadOnly)) << qPrintable(bestand);
        return bron.readAll();
    }
    // Everything in the folder, links that lead nowhere too.
    [[nodiscard]] QStringList inhoud() const {
        return QDir(map.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] Bericht aan() const { return brixtel::meldAan(map.path(), kOpdracht); }
    [[nodiscard]] Bericht af() const { return brixtel::meldAf(map.path()); }

    // Neither call changes anything, and each says so in one line.
    void verwachtWeigering(const char* waarom) const {
        const QStringList voor = inhoud();
        for (const Bericht& bericht : {aan(), af()}) {
            EXPECT_FALSE(bericht.gelukt);
            EXPECT_TRUE(bericht.regel.contains(QString::fromUtf8(waarom)))
                << qPrintable(bericht.regel);
            EXPECT_TRUE(bericht.regel.endsWith(QStringLiteral("; er is niets veranderd")));
            EXPECT_FALSE(bericht.regel.contains(u'\n'));
        }
        EXPECT_EQ(inhoud(), voor);
    }
};

TEST_F(Aanmelding, InAndOutLeavesTheFileAsItWasAndABackup) {
    schrijf(naam(), kTekst);
    EXPECT_TRUE(aan().gelukt);
    EXPECT_TRUE(lees(naam()).contains("\n  \"Brixtel\"  brixtel-saver --root  \\n\\\n"));
    EXPECT_EQ(lees(vorige()), kTekst);
    EXPECT_TRUE(af().gelukt);
    EXPECT_EQ(lees(naam()), kTekst);
    EXPECT_EQ(inhoud().size(), 2) << qPrintable(inhoud().join(u' '));
}

TEST_F(Aanmelding, TwiceIsOnceAndSaysSo) {
    schrijf(naam(), kTekst);
    EXPECT_TRUE(aan().gelukt);
    const QByteArray eens = lees(naam());
    const Bericht weer = aan();
    EXPECT_TRUE(weer.gelukt);
    EXPECT_TRUE(weer.regel.contains(QStringLiteral("stond al")));
    EXPECT_EQ(lees(naam()), eens);
    EXPECT_EQ(lees(vorige()), kTekst);
    EXPECT_TRUE(af().gelukt);
    EXPECT_TRUE(af().regel.contains(QStringLiteral("stond niet")));
    EXPECT_EQ(lees(naam()), kTekst);
}

TEST_F(Aanmelding, WithoutAFileOneIsMadeAndGoesAgain) {
    EXPECT_TRUE(aan().gelukt);
    EXPECT_EQ(inhoud(), QStringList{QStringLiteral(".xscreensaver")});
    EXPECT_TRUE(af().gelukt);
    EXPECT_TRUE(inhoud().isEmpty()) << qPrintable(inhoud().join(u' '));
    EXPECT_TRUE(af().gelukt);
    EXPECT_TRUE(inhoud().isEmpty());
}

TEST_F(Aanmelding, AnEmptyFileStaysAFile) {
    schrijf(naam(), {});
    EXPECT_TRUE(aan().gelukt);
    EXPECT_TRUE(af().gelukt);
    EXPECT_EQ(lees(naam()), QByteArray());
}

TEST_F(Aanmelding, ALinkStaysALinkAndItsTargetIsReplaced) {
    ASSERT_TRUE(QDir(map.path()).mkdir(QStringLiteral("elders")));
    const QString doel = map.filePath(QStringLiteral("elders/instellingen"));
    schrijf(doel, kTekst);
    ASSERT_EQ(symlink("elders/instellingen", QFile::encodeName(naam()).constData()), 0);
    EXPECT_TRUE(aan().gelukt);
    EXPECT_EQ(QFile::symLinkTarget(naam()), doel);
    EXPECT_TRUE(lees(doel).contains("brixtel-saver"));
    EXPECT_TRUE(af().gelukt);
    EXPECT_EQ(lees(doel), kTekst);
    EXPECT_EQ(QDir(map.filePath(QStringLiteral("elders"))).entryList(QDir::Files | QDir::Hidden),
              QStringList{QStringLiteral("instellingen")});
}

TEST_F(Aanmelding, TheRightsOfTheFileAreKept) {
    schrijf(naam(), kTekst);
    ASSERT_EQ(chmod(QFile::encodeName(naam()).constData(), 0640), 0);
    EXPECT_TRUE(aan().gelukt);
    for (const QString& bestand : {naam(), vorige()}) {
        struct stat stand {};
        ASSERT_EQ(stat(QFile::encodeName(bestand).constData(), &stand), 0);
        EXPECT_EQ(stand.st_mode & 07777, 0640U) << qPrintable(bestand);
    }
}

TEST_F(Aanmelding, AFolderIsRefused) {
    ASSERT_TRUE(QDir(map.path()).mkdir(QStringLiteral(".xscreensaver")));
    verwachtWeigering("is een map");
}

TEST_F(Aanmelding, APipeIsRefusedAndNotWaitedFor) {
    ASSERT_EQ(mkfifo(QFile::encodeName(naam()).constData(), 0600), 0);
    verwachtWeigering("is geen gewoon bestand");
}

TEST_F(Aanmelding, ALinkToNothingIsRefused) {
    ASSERT_EQ(symlink("er/niet", QFile::encodeName(naam()).constData()), 0);
    verwachtWeigering("verwijzing naar iets dat er niet is");
}

TEST_F(Aanmelding, ALinkToItselfIsRefused) {
    ASSERT_EQ(symlink(".xscreensaver", QFile::encodeName(naam()).constData()), 0);
    verwachtWeigering("verwijzing die niet te volgen is");
}

TEST_F(Aanmelding, ABinaryFileIsRefused) {
    const QByteArray png("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    schrijf(naam(), png);
    verwachtWeigering("is op regel 1 geen bestand van xscreensaver");
    EXPECT_EQ(lees(naam()), png);
}

TEST_F(Aanmelding, ATextThatIsNotTheHostsIsRefusedByItsLine) {
    schrijf(naam(), "lock: True\neen brief\n");
    verwachtWeigering("is op regel 2 geen bestand van xscreensaver");
}

TEST_F(Aanmelding, AHugeFileIsRefused) {
    schrijf(naam(), QByteArray("# niets\n").repeated(200'000));
    verwachtWeigering("is te groot");
}

TEST_F(Aanmelding, AFileThatMayNotBeReadOrChangedIsRefused) {
    schrijf(naam(), kTekst);
    const QByteArray pad = QFile::encodeName(naam());
    if (geteuid() == 0) {
        ASSERT_EQ(chown(pad.constData(), 65534, 65534), 0);
        ASSERT_EQ(chown(QFile::encodeName(map.path()).constData(), 65534, 65534), 0);
    }
    const AlsGebruiker gebruiker;
    ASSERT_EQ(chmod(pad.constData(), 0000), 0);
    verwachtWeigering("is niet te lezen");
    ASSERT_EQ(chmod(pad.constData(), 0400), 0);
    verwachtWeigering("mag niet veranderd worden");
    ASSERT_EQ(chmod(pad.constData(), 0600), 0);
    ASSERT_EQ(chmod(QFile::encodeName(map.path()).constData(), 0500), 0);
    // Nothing can come out of it that is not in it.
    const Bericht bericht = aan();
    EXPECT_FALSE(bericht.gelukt);
    EXPECT_TRUE(bericht.regel.contains(QStringLiteral("kan niet vervangen worden: dat mag niet")))
        << qPrintable(bericht.regel);
    ASSERT_EQ(chmod(QFile::encodeName(map.path()).constData(), 0700), 0);
    EXPECT_EQ(lees(naam()), kTekst);
    EXPECT_EQ(inhoud(), QStringList{QStringLiteral(".xscreensaver")});
}

TEST_F(Aanmelding, ABackupThatCannotBeMadeStopsIt) {
    schrijf(naam(), kTekst);
    ASSERT_TRUE(QDir(map.path()).mkdir(QFileInfo(vorige()).fileName()));
    EXPECT_FALSE(aan().gelukt);
    EXPECT_EQ(lees(naam()), kTekst);
    EXPECT_EQ(inhoud().size(), 2) << qPrintable(inhoud().join(u' '));
}

TEST_F(Aanmelding, ADiskThatIsFullLeavesTheFileAsItWasAndNothingBesideIt) {
    schrijf(naam(), kTekst);
    // The limit of a file's size stands in for a full disk.
    const auto oudeHandeling = signal(SIGXFSZ, SIG_IGN);
    rlimit oud{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &oud), 0);
    for (const rlim_t past : {rlim_t{0}, rlim_t{16}, static_cast<rlim_t>(kTekst.size() - 1)}) {
        const rlimit krap{.rlim_cur = past, .rlim_max = oud.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &krap), 0);
        const Bericht bericht = aan();
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &oud), 0);
        EXPECT_FALSE(bericht.gelukt);
        EXPECT_TRUE(bericht.regel.contains(QStringLiteral("is niet te schrijven")))
            << qPrintable(bericht.regel);
        EXPECT_EQ(lees(naam()), kTekst);
        EXPECT_EQ(inhoud(), QStringList{QStringLiteral(".xscreensaver")});
    }
    signal(SIGXFSZ, oudeHandeling);
}

TEST_F(Aanmelding, AHomeThatIsNotThereIsOneLine) {
    for (const QString& thuis : {QString(), map.filePath(QStringLiteral("er-niet"))}) {
        const Bericht bericht = brixtel::meldAan(thuis, kOpdracht);
        EXPECT_FALSE(bericht.gelukt);
        EXPECT_FALSE(bericht.regel.contains(u'\n'));
    }
}

TEST_F(Aanmelding, ManyAtOnceIsOnce) {
    schrijf(naam(), kTekst);
    std::vector<std::thread> samen;
    for (int i = 0; i < 8; ++i)
        samen.emplace_back([this] { EXPECT_TRUE(aan().gelukt); });
    for (std::thread& draad : samen)
        draad.join();
    EXPECT_EQ(lees(naam()).count("brixtel-saver"), 1);
    EXPECT_EQ(lees(vorige()), kTekst);
    EXPECT_TRUE(af().gelukt);
    EXPECT_EQ(lees(naam()), kTekst);
}

TEST_F(Aanmelding, TheHostGetsAPathThatItCanStart) {
    const auto opdracht = [this](const char* waar) {
        const QString pad = map.filePath(QString::fromUtf8(waar));
        QDir().mkpath(QFileInfo(pad).path());
        schrijf(pad, {});
        return brixtel::opdrachtVoorGastheer(pad);
    };
    const QByteArray hier = QFile::encodeName(QDir(map.path()).canonicalPath());
    EXPECT_EQ(opdracht("bin/brixtel-saver"), hier + "/bin/brixtel-saver --root");
    EXPECT_EQ(opdracht("een map/brixtel-saver"), "'" + hier + "/een map/brixtel-saver' --root");
    EXPECT_EQ(opdracht("d'r/brixtel-saver"), QByteArray());
    EXPECT_FALSE(brixtel::meldAan(map.path(), {}).gelukt);
}

}  // namespace
