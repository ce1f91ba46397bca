// SPDX-License-Identifier: MIT
// Continuous integration's repeat of failed tests, on a build folder of a few shell
// commands.
#include <gtest/gtest.h>

#include <QProcess>

#include "tests/support/Paden.h"
#include "tests/support/TijdelijkeMap.h"

namespace {

struct Uitkomst {
    int uitgang = -1;
    QByteArray uit;
    QByteArray fouten;
};

class Herhaal : public testing::Test {
  protected:
    // A test that is this shell command, which may make files in the folder.
    void test(const QByteArray& naam, const QByteArray& label, const QByteArray& opdracht) {
        tests_ += "add_test(" + naam + " /bin/sh -c \"" + opdracht + "\")\nset_tests_properties(" +
                  naam + " PROPERTIES LABELS " + label + " WORKING_DIRECTORY " + map() + ")\n";
    }
    Uitkomst draai(const QStringList& opdracht = {}) {
        (void)map_.bestand("CTestTestfile.cmake", tests_.toStdString());
        const QString hier = QString::fromLocal8Bit(map());
        QProcess proces;
        const QStringList ctest{QStringLiteral("ctest"), QStringLiteral("--test-dir"), hier};
        proces.start(QStringLiteral(BRIXTEL_SOURCE_DIR "/.ci/herhaal"),
                     QStringList{hier} + (opdracht.isEmpty() ? ctest : opdracht));
        EXPECT_TRUE(proces.waitForFinished(60'000));
        return {proces.exitCode(), proces.readAllStandardOutput(), proces.readAllStandardError()};
    }
    QByteArray map() const { return QByteArray::fromStdString((map_ / "").string()); }

    steun::TijdelijkeMap map_;
    QByteArray tests_;
};

// Fails the first time only.
const QByteArray kEenKeer = "test -e $0.keer || { touch $0.keer; exit 1; }";

QByteArray eenKeer(const char* naam) {
    return QByteArray(kEenKeer).replace("$0", naam);
}

TEST_F(Herhaal, WhereAllPassNothingIsRepeatedOrNamed) {
    test("goed", "x11", "echo x >> keren");
    const Uitkomst uit = draai();
    EXPECT_EQ(uit.uitgang, 0);
    EXPECT_FALSE(uit.uit.contains("wankel"));
    EXPECT_EQ(std::filesystem::file_size(map_ / "keren"), 2U);
}

TEST_F(Herhaal, OneOfADisplayThatPassesTheSecondTimeIsNamed) {
    test("goed", "snel", "echo x >> keren");
    test("scherm", "x11", eenKeer("scherm"));
    test("blad", "qml", eenKeer("blad"));
    const Uitkomst uit = draai();
    EXPECT_EQ(uit.uitgang, 0) << uit.fouten.constData();
    EXPECT_TRUE(uit.uit.endsWith("wankel:\nblad\nscherm\n")) << uit.uit.constData();
    EXPECT_EQ(std::filesystem::file_size(map_ / "keren"), 2U);  // once
}

TEST_F(Herhaal, ASecondFailureFails) {
    test("scherm", "x11", eenKeer("scherm"));
    test("stuk", "x11", "exit 1");
    const Uitkomst uit = draai();
    EXPECT_EQ(uit.uitgang, 1);
    EXPECT_FALSE(uit.uit.contains("wankel"));
}

TEST_F(Herhaal, AnyOtherThatFailsIsNotRepeated) {
    test("scherm", "x11", eenKeer("scherm"));
    test("rekenen", "snel", eenKeer("rekenen"));
    const Uitkomst uit = draai();
    EXPECT_EQ(uit.uitgang, 1);
    EXPECT_TRUE(uit.fouten.contains("rekenen")) << uit.fouten.constData();
    EXPECT_FALSE(uit.fouten.contains("scherm")) << uit.fouten.constData();
}

TEST_F(Herhaal, ABuildThatFailsFailsAlsoAfterARunThatDid) {
    test("scherm", "x11", eenKeer("scherm"));
    EXPECT_EQ(draai().uitgang, 0);
    EXPECT_EQ(draai({QStringLiteral("/bin/false")}).uitgang, 1);
}

}  // namespace
