// SPDX-License-Identifier: MIT
// The instructions of a steady frame beside the stored ones, so that nobody makes a scene
// dearer unnoticed, however busy the machine is.
#include <gtest/gtest.h>

#include <QFile>
#include <QHash>
#include <QProcess>
#include <QStandardPaths>

#include "tests/support/Paden.h"

namespace {

constexpr double kRoom = 0.02;

struct Counts {
    QString basis;  // what the counts depend on besides the source
    QHash<QString, qint64> byScene;
};

Counts countsIn(const QByteArray& text) {
    Counts counts;
    for (const QString& line : QString::fromUtf8(text).split(u'\n', Qt::SkipEmptyParts)) {
        const QStringList words = line.split(u' ');
        if (words.size() == 2)
            counts.byScene.insert(words[0], words[1].toLongLong());
        else
            counts.basis = line;
    }
    return counts;
}

QByteArray outputOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(program, arguments);
    if (!process.waitForFinished(600'000) || process.exitCode() != 0) return {};
    return process.readAllStandardOutput();
}

class BeeldKosten : public testing::TestWithParam<const char*> {};

}  // namespace

TEST_P(BeeldKosten, ASteadyFrameTakesNoMoreInstructionsThanIsStored) {
    QFile file(QStringLiteral(BRIXTEL_TEST_DATA "/beeldkosten"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const Counts stored = countsIn(file.readAll());
    const QString scene = QString::fromLatin1(GetParam());
    ASSERT_TRUE(stored.byScene.contains(scene));
    if (QStandardPaths::findExecutable(QStringLiteral("valgrind")).isEmpty())
        GTEST_SKIP() << "valgrind is not installed";
    const QString build = QStringLiteral(BRIXTEL_BUILD_DIR);
    const QString basis =
        countsIn(outputOf(build + QStringLiteral("/tests/beeldkosten"), {})).basis;
    if (basis != stored.basis)
        GTEST_SKIP() << "the counts are for " << qPrintable(stored.basis) << ", this is "
                     << qPrintable(basis);
    const Counts counted = countsIn(
        outputOf(QStringLiteral(BRIXTEL_TEST_DATA "/../worlds/beeldkosten"), {build, scene}));
    ASSERT_TRUE(counted.byScene.contains(scene));
    const auto wanted = static_cast<double>(stored.byScene[scene]);
    const auto got = static_cast<double>(counted.byScene[scene]);
    EXPECT_LE(got, (1.0 + kRoom) * wanted) << "dearer: tests/worlds/beeldkosten tells the rule";
    EXPECT_GE(got, (1.0 - kRoom) * wanted) << "cheaper: renew the stored counts";
}

INSTANTIATE_TEST_SUITE_P(Worlds, BeeldKosten,
                         testing::Values("bol", "kubus", "tunnel", "logo", "regen"),
                         [](const auto& een) { return std::string(een.param); });
