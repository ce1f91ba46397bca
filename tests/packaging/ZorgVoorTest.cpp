// SPDX-License-Identifier: MIT
// The commands at the root look for what they need, install it, and build.
#include "tests/packaging/ZorgVoor.h"

#include <unistd.h>

#include <QRegularExpression>

namespace {

TEST_F(ZorgVoor, WhatDebianHasIsNotInstalledAgain) {
    isDebian("printf 'install ok installed'");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien proeven")), 0);
    EXPECT_TRUE(fouten.isEmpty()) << qPrintable(fouten.join(u'\n'));
    EXPECT_FALSE(gebeurd().contains(QStringLiteral("apt-get")));
    EXPECT_TRUE(gebeurd().contains(QStringLiteral(" xvfb\n")));
}

TEST_F(ZorgVoor, WhatWasRemovedButConfiguredIsMissing) {
    isDebian(
        "case \"$*\" in *\" lsof\") printf 'deinstall ok config-files' ;;"
        " *) printf 'install ok installed' ;; esac");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien")), 0);
    EXPECT_TRUE(
        gebeurd().contains(QStringLiteral("apt-get install -q -y --no-install-recommends lsof\n")))
        << qPrintable(gebeurd());
    EXPECT_EQ(fouten, QStringList{QStringLiteral("Dit wordt geïnstalleerd: lsof")});
}

TEST_F(ZorgVoor, ABrokenSourceDoesNotStopAnInstallThatSucceeds) {
    isDebian("exit 1");
    zet("apt-get", "[ $1 != update ]");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen; echo verder")), 0);
    EXPECT_EQ(uit, QStringLiteral("verder\n"));
    EXPECT_EQ(fouten.last(),
              QStringLiteral("Een bron van apt antwoordt niet; met de andere gaat het verder."));
}

TEST_F(ZorgVoor, AnOrdinaryUserInstallsBySudo) {
    isDebian("exit 1");
    zet("id", "echo 1000");
    zet("sudo", "[ \"$1\" = -v ] || exec \"$@\"");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor draaien")), 0);
    EXPECT_TRUE(gebeurd().contains(QStringLiteral("sudo apt-get update")));
    EXPECT_TRUE(gebeurd().contains(QStringLiteral("sudo env DEBIAN_FRONTEND=noninteractive")));
    EXPECT_TRUE(gebeurd().contains(QStringLiteral("\napt-get install")));
}

TEST_F(ZorgVoor, AnOrdinaryUserWithoutSudoGetsOneLineOfAdvice) {
    isDebian("exit 1");
    zet("id", "echo 1000");
    for (const bool erIsSudo : {false, true}) {
        if (erIsSudo) zet("sudo", "exit 1");  // who is no member of the group
        EXPECT_EQ(voer(QStringLiteral("zorg_voor draaien; echo verder")), 1);
        EXPECT_TRUE(uit.isEmpty());
        ASSERT_EQ(fouten.size(), 1) << qPrintable(fouten.join(u'\n'));
        EXPECT_TRUE(fouten.first().startsWith(QStringLiteral("Hiervoor is een beheerder nodig")));
        EXPECT_TRUE(fouten.first().contains(QStringLiteral("apt-get install lsof libqt6gui6")));
        EXPECT_FALSE(gebeurd().contains(QStringLiteral("apt-get ")));
    }
}

TEST_F(ZorgVoor, WithoutANetworkTheLastLineSaysSo) {
    isDebian("exit 1");
    zet("apt-get",
        "[ $1 = update ] && exit 0; echo 'Err: Temporary failure resolving deb'; exit 100");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor draaien")), 1);
    EXPECT_TRUE(fouten.last().startsWith(
        QStringLiteral("Er is geen netwerk om van te installeren; doe zodra het kan: apt-get")))
        << qPrintable(fouten.last());
    zet("apt-get", "[ $1 = update ] && exit 0; echo 'E: dpkg was interrupted'; exit 100");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor draaien")), 1);
    EXPECT_TRUE(fouten.last().startsWith(QStringLiteral("Het installeren lukt niet; ")))
        << qPrintable(fouten.last());
}

TEST_F(ZorgVoor, ElsewhereWhatIsThereIsLookedForAndNothingIsSaid) {
    zet("pkg-config", "exit 0");
    for (const char* naam : {"c++", "cmake", "ninja", "gzip", "lsof"})
        zet(naam, "exit 0");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien; echo verder")), 0);
    EXPECT_EQ(uit, QStringLiteral("verder\n"));
    EXPECT_TRUE(fouten.isEmpty());
}

TEST_F(ZorgVoor, ElsewhereTheMissingIsNamedWithTheCommandThatInstallsIt) {
    zet("pkg-config", "case $2 in xcb* | glm) exit 1 ;; esac");
    for (const char* naam : {"c++", "cmake", "gzip", "lsof"})
        zet(naam, "exit 0");
    const QString mist = QStringLiteral(
        "Er ontbreekt: ninja glm xcb xcb-shm xcb-randr xcb-dpms xcb-screensaver xcb-shape "
        "xcb-xfixes — ");
    const QString gevraagd = QStringLiteral(
        " install /usr/bin/ninja 'pkgconfig(glm)' 'pkgconfig(xcb)' "
        "'pkgconfig(xcb-shm)' 'pkgconfig(xcb-randr)' 'pkgconfig(xcb-dpms)' "
        "'pkgconfig(xcb-screensaver)' "
        "'pkgconfig(xcb-shape)' 'pkgconfig(xcb-xfixes)'");
    const auto verwacht = [&](const QString& opdracht) {
        EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien; echo verder")), 1);
        EXPECT_TRUE(uit.isEmpty());
        EXPECT_EQ(fouten, QStringList{mist + opdracht});
    };
    verwacht(QStringLiteral("installeer dat met het pakketbeheer van dit systeem"));
    zet("pacman", "exit 0");
    zet("rpm", "exit 0");
    verwacht(QStringLiteral("sudo pacman -S --needed ninja glm libxcb"));
    zet("zypper", "exit 1");
    verwacht(QStringLiteral("sudo zypper") + gevraagd);
    zet("dnf", "exit 1");
    verwacht(QStringLiteral("sudo dnf") + gevraagd);
    EXPECT_FALSE(gebeurd().contains(QStringLiteral("dnf ")));
}

TEST_F(ZorgVoor, ElsewherePackagesWithoutProgramOrModuleAreAskedByName) {
    zet("pkg-config", "exit 0");
    for (const char* naam : {"c++", "cmake", "ninja", "gzip", "lsof"})
        zet(naam, "exit 0");
    const auto verwacht = [&](const char* namen, const char* opdracht) {
        EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien")), 1);
        EXPECT_EQ(fouten, QStringList{QStringLiteral("Er ontbreekt: %1 — sudo %2")
                                          .arg(QLatin1String(namen), QLatin1String(opdracht))});
    };
    zet("pacman", "exit 1");
    verwacht("qt6-wayland mesa dejavu qtquick",
             "pacman -S --needed qt6-wayland mesa ttf-dejavu qt6-declarative");
    // Another system's package manager has no say.
    zet("rpm", "exit 0");
    verwacht("qt6-wayland mesa dejavu qtquick",
             "pacman -S --needed qt6-wayland mesa ttf-dejavu qt6-declarative");
    zet("zypper", "exit 1");
    zet("rpm", "[ $2 = dejavu-fonts ]");
    verwacht("qt6-wayland mesa qtquick",
             "zypper install qt6-wayland Mesa-dri qt6-declarative-imports");
    zet("dnf", "exit 1");
    zet("rpm", "[ $2 = qt6-qtdeclarative ]");
    verwacht("qt6-wayland mesa dejavu",
             "dnf install qt6-qtwayland mesa-dri-drivers dejavu-sans-mono-fonts");
    zet("rpm", "exit 0");
    EXPECT_EQ(voer(QStringLiteral("zorg_voor bouwen draaien")), 0);
    EXPECT_TRUE(fouten.isEmpty()) << qPrintable(fouten.join(u'\n'));
}

TEST_F(ZorgVoor, EveryModuleThatTheBuildAsksForIsInTheList) {
    const QString bouw = tekstVan(QStringLiteral(BRIXTEL_SOURCE_DIR "/CMakeLists.txt"));
    static const QRegularExpression vraag(
        QStringLiteral("pkg_check_modules\\(\\w+ REQUIRED IMPORTED_TARGET ([^)]+)\\)"));
    const QString lijst = tekstVan(boom + QStringLiteral("/packaging/benodigd"));
    int gezien = 0;
    for (auto treffers = vraag.globalMatch(bouw); treffers.hasNext();)
        for (const QString& woord :
             treffers.next().captured(1).split(QRegularExpression(QStringLiteral("[ \n]+")))) {
            const QString naam = woord.section(QRegularExpression(QStringLiteral("[<>=]")), 0, 0);
            const QRegularExpression regel(
                QStringLiteral("^(bouwen|proeven) +pc +") + QRegularExpression::escape(naam) + u' ',
                QRegularExpression::MultilineOption);
            EXPECT_TRUE(lijst.contains(regel)) << qPrintable(naam);
            ++gezien;
        }
    EXPECT_GT(gezien, 8);
}

TEST_F(ZorgVoor, EveryLineOfTheListHasAWordPerColumn) {
    int regels = 0;
    int pakketten = 0;
    for (const QString& regel :
         tekstVan(boom + QStringLiteral("/packaging/benodigd")).split(u'\n', Qt::SkipEmptyParts)) {
        if (regel.startsWith(u'#')) continue;
        const QStringList woorden = regel.simplified().split(u' ');
        const bool pakket = woorden.at(1) == u"pak";
        EXPECT_EQ(woorden.size(), pakket ? 7 : 5) << qPrintable(regel);
        // A package that comes with another has nothing to be asked for.
        EXPECT_FALSE(pakket && woorden.contains(QStringLiteral("-"))) << qPrintable(regel);
        pakketten += pakket ? 1 : 0;
        ++regels;
    }
    EXPECT_GT(regels, 50);
    EXPECT_GT(pakketten, 3);
}

TEST_F(ZorgVoor, ATreeThatIsNotOursToWriteGetsOneLine) {
    ASSERT_TRUE(QDir().mkpath(boom + QStringLiteral("/build/release")));
    const auto alles = QFileDevice::ReadOwner | QFileDevice::ExeOwner | QFileDevice::ReadOther |
                       QFileDevice::ExeOther;
    // Root may write anywhere, so that root asks as another.
    QStringList als;
    if (geteuid() == 0) {
        QFile::setPermissions(map.path(), alles | QFileDevice::WriteOwner);
        for (const QString& naam :
             {boom + QStringLiteral("/packaging/zorg-voor.sh"), boom + QStringLiteral("/test")})
            QFile::setPermissions(naam, alles);
        als << QStandardPaths::findExecutable(QStringLiteral("setpriv"))
            << QStringLiteral("--reuid=65534") << QStringLiteral("--regid=65534")
            << QStringLiteral("--clear-groups");
    }
    QFile::setPermissions(boom + QStringLiteral("/build/release"), alles);
    const QStringList vraag{
        QStringLiteral("bash"), QStringLiteral("-c"),
        QStringLiteral(". packaging/zorg-voor.sh; mag_bouwen release && echo verder")};
    EXPECT_EQ(draai(als + vraag), 1);
    EXPECT_TRUE(uit.isEmpty());
    ASSERT_EQ(fouten.size(), 1) << qPrintable(fouten.join(u'\n'));
    EXPECT_TRUE(fouten.first().contains(QStringLiteral("/een boom/build/release mag u niet")))
        << qPrintable(fouten.first());
    QFile::setPermissions(boom + QStringLiteral("/build/release"),
                          alles | QFileDevice::WriteOwner | QFileDevice::WriteOther);
    EXPECT_EQ(draai(als + vraag), 0) << qPrintable(fouten.join(u'\n'));
}

TEST_F(ZorgVoor, ATreeThatWasBuiltElsewhereIsMadeAnew) {
    ASSERT_TRUE(QDir().mkpath(boom + QStringLiteral("/build/release")));
    const QString cache = boom + QStringLiteral("/build/release/CMakeCache.txt");
    schrijf(cache, "CMAKE_HOME_DIRECTORY:INTERNAL=" + QFile::encodeName(boom) + "\n");
    EXPECT_EQ(voer(QStringLiteral("mag_bouwen release")), 0);
    EXPECT_TRUE(fouten.isEmpty()) << qPrintable(fouten.join(u'\n'));
    EXPECT_TRUE(QFile::exists(cache));
    schrijf(cache, "CMAKE_HOME_DIRECTORY:INTERNAL=/elders/boom\n");
    EXPECT_EQ(voer(QStringLiteral("mag_bouwen release")), 0);
    EXPECT_EQ(fouten, QStringList{QStringLiteral(
                          "build/release is gebouwd in /elders/boom en wordt opnieuw gemaakt.")});
    EXPECT_FALSE(QFile::exists(cache));
}

TEST_F(ZorgVoor, ALogFileGetsALineForEachTwentiethPart) {
    zet("ninja",
        "echo 'ninja: Entering directory'; for ((i = 1; i <= 400; ++i)); do echo \"[$i/400] c++ "
        "x\";"
        " [ $i = 7 ] && echo 'x.cpp:3: warning: let op'; done; true");
    EXPECT_EQ(voer(QStringLiteral("bouw release alles")), 0);
    EXPECT_EQ(fouten.size(), 22);
    EXPECT_EQ(fouten.first(), QStringLiteral("Bouwen: 1 van 400"));
    EXPECT_EQ(fouten.at(1), QStringLiteral("x.cpp:3: warning: let op"));
    EXPECT_EQ(fouten.last(), QStringLiteral("Bouwen: 400 van 400"));
    EXPECT_TRUE(gebeurd().contains(QStringLiteral("ninja -C build/release alles")));
}

TEST_F(ZorgVoor, ABuildWithNothingToDoIsSilentAndOneThatFailsEndsTheCommand) {
    zet("ninja", "echo 'ninja: Entering directory'; echo 'ninja: no work to do.'");
    EXPECT_EQ(voer(QStringLiteral("bouw release alles")), 0);
    EXPECT_TRUE(fouten.isEmpty());
    zet("ninja", "echo '[1/9] c++ x'; echo 'FAILED: x.o'; exit 1");
    EXPECT_EQ(voer(QStringLiteral("bouw release alles; echo verder")), 1);
    EXPECT_TRUE(uit.isEmpty());
    EXPECT_EQ(fouten.last(), QStringLiteral("FAILED: x.o"));
}

TEST_F(ZorgVoor, TheLettersBetweenTwoWordsAreCounted) {
    const std::pair<const char*, const char*> paren[] = {
        {"preset preset", "0"},  {"prset preset", "1"},  {"presett preset", "1"},
        {"pressed preset", "2"}, {"repeat preset", "3"}, {"x preset", "6"}};
    for (const auto& [woorden, verwacht] : paren) {
        EXPECT_EQ(voer(QStringLiteral("afstand ") + QLatin1String(woorden)), 0);
        EXPECT_EQ(uit.trimmed(), QLatin1String(verwacht)) << woorden;
    }
}

}  // namespace
