// SPDX-License-Identifier: MIT
// The table's own look-up, by a copy of its library in a folder of the test's own. A process
// has its library already, so that a program of its own is asked.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <QProcess>
#include <QTemporaryDir>
#include <filesystem>
#include <fstream>

#include "connections/LandenTabel.h"
#include "tests/connections/Tabellen.h"
#include "tests/support/Paden.h"

namespace {

namespace fs = std::filesystem;

class EigenTabel : public testing::Test {
  protected:
    const QTemporaryDir tijdelijk_;
    const fs::path map_ = fs::canonical(tijdelijk_.path().toStdString());
    const fs::path bestand_ = map_ / "resources" / "landen.bin";

    void SetUp() override {
        Dl_info info{};
        ASSERT_NE(dladdr(reinterpret_cast<const void*>(&brixtel::LandenTabel::gedeeld), &info), 0);
        const fs::path bibliotheek(info.dli_fname);
        fs::copy_file(bibliotheek, map_ / bibliotheek.filename());
    }
    // The words of a program with the copied library.
    [[nodiscard]] std::string antwoord() const {
        QProcess proces;
        auto omgeving = QProcessEnvironment::systemEnvironment();
        omgeving.insert(QStringLiteral("LD_LIBRARY_PATH"),
                        tijdelijk_.path() + QStringLiteral(":" BRIXTEL_LIB_DIR));
        omgeving.insert(QStringLiteral("LC_ALL"), QStringLiteral("nl_BE.UTF-8"));
        proces.setProcessEnvironment(omgeving);
        proces.start(QStringLiteral(BRIXTEL_BUILD_DIR "/tests/programmas/landenvraag"),
                     {QStringLiteral("8.8.8.8"), QStringLiteral("193.0.6.139"),
                      QStringLiteral("::ffff:8.8.8.8"), QStringLiteral("2600::1")});
        EXPECT_TRUE(proces.waitForFinished(60'000));
        EXPECT_EQ(proces.exitStatus(), QProcess::NormalExit);
        EXPECT_EQ(proces.exitCode(), 0);
        EXPECT_EQ(proces.readAllStandardError().toStdString(), "");
        return proces.readAllStandardOutput().toStdString();
    }
    [[nodiscard]] std::string zonderTabel() const {
        return "- - - - NL 52.13 5.29 0 " + map_.string() + '\n';
    }
};

TEST_F(EigenTabel, ALibraryWithoutTheFileBesideItHasNoTable) {
    EXPECT_EQ(antwoord(), zonderTabel());
    // A folder of that name is no file.
    fs::create_directories(bestand_);
    EXPECT_EQ(antwoord(), zonderTabel());
}

TEST_F(EigenTabel, ALibraryReadsTheFileBesideItselfAndNoOther) {
    fs::create_directories(bestand_.parent_path());
    const auto bytes = brixtel::pakIn(brixtel::schrijfLanden(steun::kleineTabel()));
    std::ofstream(bestand_, std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    ASSERT_EQ(fs::file_size(bestand_), bytes.size());
    EXPECT_EQ(antwoord(), "US - US US NL 52.25 5.5 3 " + map_.string() + '\n');
}

}  // namespace
