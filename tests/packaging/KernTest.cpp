// SPDX-License-Identifier: MIT
// The core of a program without symbols, read with the symbols that its build id finds.
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>

#include "tests/support/Paden.h"

namespace {

namespace fs = std::filesystem;

struct Gedraaid {
    int uitgang;
    QByteArray uit, fouten;
};

Gedraaid draai(const QStringList& woorden) {
    QProcess proces;
    proces.start(woorden.first(), woorden.mid(1));
    if (!proces.waitForFinished(100'000)) return {-1, {}, proces.errorString().toUtf8()};
    const int uitgang = proces.exitStatus() == QProcess::NormalExit ? proces.exitCode() : -1;
    return {uitgang, proces.readAllStandardOutput(), proces.readAllStandardError()};
}

QString alsTekst(const fs::path& pad) {
    return QString::fromStdString(pad.string());
}

// A program and a library of ours, installed as the packages install them.
class Kern : public testing::Test {
  protected:
    const QTemporaryDir map_;
    const fs::path wortel_ = map_.path().toStdString();
    const fs::path programma_ = wortel_ / "usr/bin/brixtel-saver";
    const fs::path bibliotheek_ = wortel_ / "usr/lib/brixtel/libkernproef.so";
    const fs::path gebouwd_ = BRIXTEL_BUILD_DIR "/tests/kern/usr";

    void SetUp() override {
        const Gedraaid gevolgd =
            draai({QStringLiteral("gdb"), QStringLiteral("-nx"), QStringLiteral("-batch"),
                   QStringLiteral("-ex"), QStringLiteral("run"), QStringLiteral("true")});
        // Some containers refuse it.
        if (!gevolgd.uit.contains("exited normally"))
            GTEST_SKIP() << "no program may be traced here: " << gevolgd.fouten.constData();
        for (const char* map : {"usr/bin", "usr/lib/brixtel", "usr/share/brixtel"})
            fs::create_directories(wortel_ / map);
        fs::copy_file(gebouwd_ / "bin/kernprogramma", programma_);
        fs::copy_file(gebouwd_ / "lib/brixtel/libkernproef.so", bibliotheek_);
        fs::create_symlink("../../share/brixtel", wortel_ / "usr/lib/brixtel/resources");
        fs::copy_file(BRIXTEL_LIB_DIR "/resources/landen.bin",
                      wortel_ / "usr/share/brixtel/landen.bin");
    }
    void objcopy(const QStringList& woorden) {
        const Gedraaid gedraaid =
            draai(QStringList{QStringLiteral(BRIXTEL_SOURCE_DIR "/packaging/objcopy")} + woorden);
        ASSERT_EQ(gedraaid.uitgang, 0) << gedraaid.fouten.constData();
    }
    // Where the symbols of the file go: by its build id.
    [[nodiscard]] fs::path symbolenVan(const fs::path& bestand) const {
        const Gedraaid kop =
            draai({QStringLiteral("readelf"), QStringLiteral("-n"), alsTekst(bestand)});
        const QByteArray id = kop.uit.mid(kop.uit.indexOf("Build ID: ") + 10).split('\n').first();
        EXPECT_EQ(id.size(), 40) << kop.uit.constData();
        return wortel_ / "usr/lib/debug/.build-id" / id.left(2).toStdString() /
               (id.mid(2).toStdString() + ".debug");
    }
    // As the packager does it: sets the symbols apart, and strips.
    void zetApart(const fs::path& bestand) {
        const fs::path symbolen = symbolenVan(bestand);
        fs::create_directories(symbolen.parent_path());
        objcopy({QStringLiteral("--only-keep-debug"), alsTekst(bestand), alsTekst(symbolen)});
        strip(bestand);
        objcopy({QStringLiteral("--add-gnu-debuglink=") + alsTekst(symbolen), alsTekst(bestand)});
    }
    void strip(const fs::path& bestand) {
        objcopy({QStringLiteral("--strip-unneeded"), alsTekst(bestand)});
    }
    [[nodiscard]] Gedraaid lees() const {
        return draai({QStringLiteral(BRIXTEL_SOURCE_DIR "/tools/pakket/kern"), alsTekst(wortel_)});
    }
    void verwacht(const char* fout) {
        const Gedraaid gedraaid = lees();
        EXPECT_EQ(gedraaid.uitgang, 1) << gedraaid.uit.constData();
        EXPECT_TRUE(gedraaid.fouten.contains(fout)) << gedraaid.fouten.constData();
    }
};

TEST_F(Kern, NamesFunctionsSourcesAndLines) {
    zetApart(programma_);
    zetApart(bibliotheek_);
    const Gedraaid gedraaid = lees();
    ASSERT_EQ(gedraaid.uitgang, 0) << gedraaid.uit.constData() << gedraaid.fouten.constData();
    // From the abort, through the library, to the program's own main.
    qsizetype plaats = -1;
    for (const char* deel :
         {"abort ()", "leesLanden (", "leesBestand (", "LandenTabel::land (", "main ("}) {
        const qsizetype daar = gedraaid.uit.indexOf(deel, plaats + 1);
        EXPECT_GT(daar, plaats) << deel << "\n" << gedraaid.uit.constData();
        plaats = daar;
    }
    EXPECT_TRUE(gedraaid.uit.contains("connections/LandenTabel.cpp:")) << gedraaid.uit.constData();
    EXPECT_FALSE(gedraaid.uit.contains(BRIXTEL_SOURCE_DIR)) << gedraaid.uit.constData();
}

TEST_F(Kern, WithoutSymbolsOfALibraryItIsRefused) {
    zetApart(programma_);
    strip(bibliotheek_);
    verwacht("de kern zegt niet waar het programma was");
}

TEST_F(Kern, SymbolsOfAnotherBuildAreNone) {
    zetApart(programma_);
    const fs::path symbolen = symbolenVan(bibliotheek_);
    zetApart(bibliotheek_);
    fs::copy_file(symbolenVan(programma_), symbolen, fs::copy_options::overwrite_existing);
    verwacht("de kern zegt niet waar het programma was");
}

TEST_F(Kern, SymbolsThatStayInTheProgramAreSaid) {
    const fs::path symbolen = symbolenVan(programma_);
    fs::create_directories(symbolen.parent_path());
    fs::copy_file(programma_, symbolen);
    verwacht("het programma heeft zijn symbolen zelf nog");
}

TEST_F(Kern, MissingSymbolsAreSaid) {
    strip(programma_);
    verwacht("zijn er geen symbolen");
}

}  // namespace
