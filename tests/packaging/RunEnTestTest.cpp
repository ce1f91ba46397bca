// SPDX-License-Identifier: MIT
// The commands at the root, ./run and ./test, with what they are given.
#include "tests/packaging/ZorgVoor.h"

namespace {

TEST_F(ZorgVoor, RunPassesItsArgumentsInAPathWithSpaces) {
    isDebian("printf 'install ok installed'");
    zet("cmake", "exit 0");
    zet("ninja", "echo 'ninja: no work to do.'");
    ASSERT_TRUE(QDir().mkpath(boom + QStringLiteral("/build/release/bin")));
    zet("brixtel-saver", "printf '<%s>' \"$@\"");
    ASSERT_TRUE(QFile::rename(pad + QStringLiteral("/brixtel-saver"),
                              boom + QStringLiteral("/build/release/bin/brixtel-saver")));
    EXPECT_EQ(draai({boom + QStringLiteral("/run"), QStringLiteral("--versie"),
                     QStringLiteral("twee woorden")}),
              0);
    EXPECT_EQ(uit, QStringLiteral("<--versie><twee woorden>"));
    EXPECT_EQ(fouten, QStringList{QStringLiteral("Het bouwen wordt voorbereid (build/release)")});
    EXPECT_TRUE(gebeurd().contains(QStringLiteral("ninja -C build/release brixtel-saver\n")));
}

TEST_F(ZorgVoor, APreparationThatFailsShowsWhy) {
    isDebian("printf 'install ok installed'");
    zet("cmake", "echo 'CMake Error: geen Qt6'; exit 1");
    EXPECT_EQ(draai({boom + QStringLiteral("/run")}), 1);
    EXPECT_EQ(fouten.at(1), QStringLiteral("CMake Error: geen Qt6"));
    EXPECT_TRUE(fouten.last().startsWith(QStringLiteral("Het voorbereiden lukt niet")));
    EXPECT_FALSE(gebeurd().contains(QStringLiteral("ninja -C")));
}

TEST_F(ZorgVoor, APresetWithoutItsNameOrWithAnUnknownOneIsToldOf) {
    EXPECT_EQ(draai({boom + QStringLiteral("/test"), QStringLiteral("--preset")}), 2);
    EXPECT_EQ(fouten, QStringList{QStringLiteral(
                          "./test --preset wil een naam: release, dev, asan, tsan of clang.")});
    EXPECT_EQ(draai({boom + QStringLiteral("/test"), QStringLiteral("--preset"),
                     QStringLiteral("zebra")}),
              2);
    EXPECT_EQ(fouten, QStringList{QStringLiteral(
                          "./test --preset wil een naam: release, dev, asan, tsan of clang, niet "
                          "'zebra'.")});
    EXPECT_TRUE(gebeurd().isEmpty());
}

TEST_F(ZorgVoor, AMistypedPresetIsToldOfAndNothingIsBuilt) {
    const std::pair<const char*, const char*> paren[] = {
        {"--presett", "is geen optie; bedoelt u --preset?"},
        {"--prset=asan", "is geen optie; bedoelt u --preset?"},
        {"-preset", "is geen optie; bedoelt u --preset?"},
        {"--pre", "is geen optie; bedoelt u --preset?"},
        {"--presentatie", "is geen optie; bedoelt u --preset?"},
        {"--preset", "staat vooraan, en maar eenmaal"}};
    for (const auto& [woord, reden] : paren) {
        EXPECT_EQ(draai({boom + QStringLiteral("/test"), QStringLiteral("-V"), QLatin1String(woord),
                         QStringLiteral("asan")}),
                  2);
        EXPECT_EQ(fouten, QStringList{QStringLiteral("./test: '%1' %2")
                                          .arg(QString::fromUtf8(woord).section(u'=', 0, 0),
                                               QLatin1String(reden))});
    }
    EXPECT_TRUE(gebeurd().isEmpty());
}

TEST_F(ZorgVoor, RunTakesNoOtherWordThanTheOneForTheDesktop) {
    for (const char* woord : {"buro", "beureau", ""}) {
        EXPECT_EQ(draai({boom + QStringLiteral("/run"), QLatin1String(woord)}), 2);
        EXPECT_EQ(fouten, QStringList{QStringLiteral("./run: '%1' is geen optie; het enige woord "
                                                     "zonder streepjes is bureau (./run --help "
                                                     "toont wat er kan)")
                                          .arg(QLatin1String(woord))});
    }
    EXPECT_TRUE(gebeurd().isEmpty());
}

TEST_F(ZorgVoor, TheTestsByClangWantItsCompilerAndAreTheFastOnes) {
    isDebian("printf 'install ok installed'");
    zet("cmake", "exit 0");
    zet("ninja", "echo 'ninja: no work to do.'");
    zet("nproc", "echo 3");
    zet("dbus-run-session", "exit 0");
    for (const char* preset : {"clang", "release"}) {
        const bool isClang = qstrcmp(preset, "clang") == 0;
        EXPECT_EQ(draai({boom + QStringLiteral("/test"), QStringLiteral("--preset"),
                         QLatin1String(preset), QStringLiteral("-R"), QStringLiteral("x"),
                         QStringLiteral("--repeat"), QStringLiteral("until-fail:2"),
                         QStringLiteral("--progress")}),
                  0);
        const QString einde = QStringLiteral("-j 3 %1-R x --repeat until-fail:2 --progress\n")
                                  .arg(isClang ? QStringLiteral("-L ^snel$ ") : QString());
        EXPECT_TRUE(gebeurd().endsWith(einde)) << qPrintable(gebeurd());
    }
    EXPECT_EQ(gebeurd().count(QStringLiteral("${Status} clang\n")), 1);
    EXPECT_EQ(draai({boom + QStringLiteral("/test"), QStringLiteral("--preset=clang")}), 0);
    EXPECT_TRUE(
        gebeurd().endsWith(QStringLiteral("build/clang --output-on-failure -j 3 -L ^snel$\n")))
        << qPrintable(gebeurd());
}

}  // namespace
