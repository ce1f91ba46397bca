// SPDX-License-Identifier: MIT
// The look of the controls: each against a stored picture, at three scales.
// tools/galerij/ververs renews the pictures.
#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QProcess>
#include <vector>

#include "tests/support/Paden.h"
#include "tests/support/Pictures.h"
#include "tests/support/TijdelijkeMap.h"

namespace {

// Nothing here depends on a GPU or on the machine's fonts; what is left are the
// roundings of another processor.
constexpr platform::test::PictureLimits kGrens{.largest = 8, .mean = 0.05};

constexpr const char* kNamen[] = {"BX",    "BXKeuze",        "BXKnop",   "BXLijn",   "BXMelding",
                                  "BXRij", "BXSchakelStijl", "BXSchuif", "BXUitleg", "BXVinkStijl"};

class GalerijTest : public testing::TestWithParam<const char*> {
  protected:
    // Runs the gallery; its exit status, −1 when it did not end by itself.
    int draai(const QStringList& woorden) {
        QProcessEnvironment omgeving;
        for (const auto& [variabele, waarde] : extra)
            omgeving.insert(variabele, waarde);
        omgeving.insert(QStringLiteral("FONTCONFIG_FILE"), QStringLiteral(BRIXTEL_LETTERTYPE));
        omgeving.insert(QStringLiteral("XDG_RUNTIME_DIR"), uit());
        // Qt warns of a language without UTF-8.
        omgeving.insert(QStringLiteral("LANG"), QStringLiteral("C.UTF-8"));
        omgeving.insert(QStringLiteral("XDG_CACHE_HOME"), uit());
        omgeving.insert(QStringLiteral("HOME"), uit());
        QProcess galerij;
        galerij.setProcessEnvironment(omgeving);
        galerij.start(QStringLiteral(BRIXTEL_BUILD_DIR "/bin/galerij"), woorden);
        if (!galerij.waitForFinished(60'000) || galerij.exitStatus() != QProcess::NormalExit)
            return -1;
        fouten = QString::fromUtf8(galerij.readAllStandardError());
        return galerij.exitCode();
    }
    [[nodiscard]] QString uit() const { return QString::fromStdString((map / "").string()); }

    steun::TijdelijkeMap map;
    QString fouten;
    std::vector<std::pair<QString, QString>> extra;  // in its environment
};

TEST_P(GalerijTest, EveryControlLooksAsStored) {
    const QString schaal = QLatin1String(GetParam());
    ASSERT_EQ(draai({QStringLiteral("--vakken"), uit(), QStringLiteral("--schaal"), schaal}), 0)
        << qPrintable(fouten);
    EXPECT_EQ(fouten, QString()) << "no warning is printed";
    for (const char* naam : kNamen) {
        const QString bestand = QStringLiteral("%1.png").arg(QLatin1String(naam));
        const QImage moet(
            QStringLiteral(BRIXTEL_TEST_DATA "/bediening/%1/%2").arg(schaal, bestand));
        ASSERT_FALSE(moet.isNull()) << naam;
        EXPECT_TRUE(platform::test::agree(QImage(uit() + bestand), moet,
                                          std::string(naam) + "-" + GetParam(), kGrens));
    }
    const auto gemaakt = QDir(uit()).entryList({QStringLiteral("*.png")});
    EXPECT_EQ(gemaakt.size(), static_cast<qsizetype>(std::size(kNamen))) << "all are compared";
}

INSTANTIATE_TEST_SUITE_P(Schalen, GalerijTest, testing::Values("1", "1.5", "2"),
                         [](const auto& een) { return "Schaal" + std::to_string(een.index); });

using GalerijOpdrachtTest = GalerijTest;

TEST_P(GalerijOpdrachtTest, OnePictureHasTheScaleAskedFor) {
    const QString bestand = uit() + QStringLiteral("alles.png");
    ASSERT_EQ(draai({QStringLiteral("--plaatje=") + bestand,
                     QStringLiteral("--schaal=") + QLatin1String(GetParam())}),
              0);
    EXPECT_EQ(QImage(bestand).width(),
              std::lround(760 * QString(QLatin1String(GetParam())).toDouble()));
}

TEST_P(GalerijOpdrachtTest, TheScaleAskedForGoesBeforeTheEnvironments) {
    extra = {{QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("3")},
             {QStringLiteral("QT_SCREEN_SCALE_FACTORS"), QStringLiteral("2")}};
    const QString bestand = uit() + QStringLiteral("alles.png");
    ASSERT_EQ(draai({QStringLiteral("--plaatje=") + bestand, QStringLiteral("--schaal=1.5")}), 0);
    EXPECT_EQ(QImage(bestand).width(), 1140);
}

TEST_P(GalerijOpdrachtTest, WithoutOneTheEnvironmentDecides) {
    const QString bestand = uit() + QStringLiteral("alles.png");
    ASSERT_EQ(draai({QStringLiteral("--plaatje=") + bestand}), 0);
    EXPECT_EQ(QImage(bestand).width(), 760);
    extra = {{QStringLiteral("QT_SCALE_FACTOR"), QStringLiteral("2")}};
    ASSERT_EQ(draai({QStringLiteral("--plaatje=") + bestand}), 0);
    EXPECT_EQ(QImage(bestand).width(), 1520);
}

TEST_P(GalerijOpdrachtTest, ABadArgumentGetsOneLineAndStatusTwo) {
    for (const char* woord : {"--schaal=0", "--schaal=nan", "--schaal=x", "--onzin", "los"}) {
        EXPECT_EQ(draai({QLatin1String(woord)}), 2) << woord;
        EXPECT_EQ(fouten.count(u'\n'), 1) << qPrintable(fouten);
    }
}

TEST_P(GalerijOpdrachtTest, AFileThatCannotBeWrittenIsAnError) {
    EXPECT_EQ(draai({QStringLiteral("--plaatje=") + uit() + QStringLiteral("weg/x.png")}), 1);
    EXPECT_EQ(fouten.count(u'\n'), 1) << qPrintable(fouten);
}

INSTANTIATE_TEST_SUITE_P(Een, GalerijOpdrachtTest, testing::Values("1.5"),
                         [](const auto&) { return std::string("Opdracht"); });

}  // namespace
