// SPDX-License-Identifier: MIT
#include "platform/session/Preferences.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <cerrno>

#include "tests/support/ZonderThuis.h"

using platform::Preferences;

namespace {

const QString kModule = QStringLiteral("nl.example.module");
const QString kKey = QStringLiteral("keuze");
const QString kValue = QStringLiteral("kubus");

struct PreferencesTest : testing::Test {
    QTemporaryDir home;
    const QString file = home.filePath(kModule + QStringLiteral(".conf"));

    PreferencesTest() { use(home.path()); }
    ~PreferencesTest() override { qunsetenv("XDG_CONFIG_HOME"); }

    static void use(const QString& folder) { qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit()); }

    void fill(const QByteArray& content) const {
        QFile out(file);
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    }
    [[nodiscard]] QByteArray content() const {
        QFile in(file);
        return in.open(QIODevice::ReadOnly) ? in.readAll() : QByteArray();
    }
    static std::optional<QString> read() { return Preferences::forModule(kModule)->string(kKey); }
    static void write(const QString& value) {
        const auto preferences = Preferences::forModule(kModule);
        preferences->setString(kKey, value);
        preferences->synchronize();
    }
};

// Runs the checks as a user whom file modes bind, and says whether they held.
template <typename Checks>
bool asOrdinaryUser(const QString& folder, Checks checks) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t kNobody = 65534;
        if (getuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) _exit(3);
        qputenv("XDG_CONFIG_HOME", folder.toLocal8Bit());
        _exit(checks() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(PreferencesTest, AnArgumentAnswersForTheFileUntilItIsTakenBack) {
    fill("[General]\nkeuze=kubus\n");
    Preferences::setArgument(kKey, QStringLiteral("regen"));
    EXPECT_EQ(read(), QStringLiteral("regen"));
    Preferences::clearArgument(kKey);
    EXPECT_EQ(read(), kValue);
}

TEST_F(PreferencesTest, AUserWithoutAFolderHasNoStore) {
    const QByteArray folder = home.path().toLocal8Bit();
    const steun::ZonderThuis homeless;
    EXPECT_EQ(Preferences::forModule(kModule), nullptr);
    QString path;
    EXPECT_EQ(Preferences::problem(kModule, path), 0);
    EXPECT_TRUE(path.isEmpty());
    // An empty variable counts as none; either one that is set gives a store.
    qputenv("HOME", "");
    qputenv("XDG_CONFIG_HOME", "");
    EXPECT_EQ(Preferences::forModule(kModule), nullptr);
    qputenv("HOME", folder);
    EXPECT_NE(Preferences::forModule(kModule), nullptr);
    qunsetenv("HOME");
    qputenv("XDG_CONFIG_HOME", folder);
    EXPECT_NE(Preferences::forModule(kModule), nullptr);
}

TEST_F(PreferencesTest, MissingFileHoldsNothing) {
    EXPECT_EQ(read(), std::nullopt);
    EXPECT_FALSE(QFile::exists(file));
}

TEST_F(PreferencesTest, WhatWasWrittenIsReadBack) {
    write(kValue);
    EXPECT_EQ(read(), kValue);
    EXPECT_EQ(content(), "[General]\nkeuze=kubus\n");
    write(QStringLiteral("bol"));
    EXPECT_EQ(read(), QStringLiteral("bol"));
}

TEST_F(PreferencesTest, AnOddStringComesBackAsItWas) {
    for (const QString& odd :
         {QString(), QStringLiteral("a, b"), QStringLiteral("\"x\"; é ünïcode\n= 3"),
          QStringLiteral("@Invalid()"), QStringLiteral(" ")}) {
        write(odd);
        EXPECT_EQ(read(), odd) << qPrintable(odd);
    }
}

TEST_F(PreferencesTest, MissingFolderIsMade) {
    use(home.filePath(QStringLiteral("a/b")));
    write(kValue);
    EXPECT_EQ(read(), kValue);
}

TEST_F(PreferencesTest, DamagedFileHoldsNothingAndCanBeWritten) {
    fill("\x00\xff\xfe[[[\nrommel\n=\n[General\nkeuze\n");
    EXPECT_EQ(read(), std::nullopt);
    write(kValue);
    EXPECT_EQ(read(), kValue);
}

TEST_F(PreferencesTest, AValueThatIsNoStringIsNone) {
    fill("[General]\nkeuze=kubus, bol\n");
    EXPECT_EQ(read(), std::nullopt);
    fill("[General]\nkeuze=@Rect(1 2 3 4)\n");
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PreferencesTest, OtherEntriesStay) {
    fill("[General]\nanders=1\n\n[meer]\nx=y\n");
    write(kValue);
    EXPECT_EQ(read(), kValue);
    EXPECT_TRUE(content().contains("anders=1"));
    EXPECT_TRUE(content().contains("[meer]\nx=y"));
}

TEST_F(PreferencesTest, UnderAFileNothingIsReadOrWritten) {
    fill("");
    use(file + QStringLiteral("/deeper"));
    EXPECT_EQ(read(), std::nullopt);
    write(kValue);
    EXPECT_EQ(content(), "");
    EXPECT_EQ(read(), std::nullopt);
}

TEST_F(PreferencesTest, AFolderInItsPlaceIsNotWritten) {
    ASSERT_TRUE(QDir().mkpath(file));
    EXPECT_EQ(read(), std::nullopt);
    write(kValue);
    EXPECT_TRUE(QFileInfo(file).isDir());
    EXPECT_TRUE(QDir(file).isEmpty());
}

TEST_F(PreferencesTest, UnreadableFileHoldsNothing) {
    fill("[General]\nkeuze=kubus\n");
    chmod(home.path().toLocal8Bit().constData(), 0755);
    chmod(file.toLocal8Bit().constData(), 0);
    EXPECT_TRUE(asOrdinaryUser(home.path(), [] { return read() == std::nullopt; }));
}

TEST_F(PreferencesTest, ReadOnlyFolderIsReadAndSilentlyNotWritten) {
    fill("[General]\nkeuze=kubus\n");
    chmod(file.toLocal8Bit().constData(), 0444);
    chmod(home.path().toLocal8Bit().constData(), 0555);
    EXPECT_TRUE(asOrdinaryUser(home.path(), [] {
        if (read() != kValue) return false;
        write(QStringLiteral("bol"));
        return read() == kValue;
    }));
    EXPECT_EQ(content(), "[General]\nkeuze=kubus\n");
    EXPECT_EQ(QDir(home.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
    chmod(home.path().toLocal8Bit().constData(), 0755);
}

TEST_F(PreferencesTest, AStoreWritesOutWhatAnotherWasGiven) {
    Preferences::forModule(kModule)->setString(kKey, kValue);
    EXPECT_EQ(read(), kValue);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(Preferences::forModule(kModule)->synchronize(), 0);
    EXPECT_EQ(content(), "[General]\nkeuze=kubus\n");
}

TEST_F(PreferencesTest, EveryKindThatIsNoStringIsNoneAndAsksForNoMemory) {
    for (const char* odd :
         {"@Variant(\\0\\0\\0\\t\\x7f\\xff\\xff\\xff)", "@ByteArray(kubus)", "@Invalid()",
          "@Variant(\\0\\0\\0\\n\\x7f\\xff\\xff\\xff)", "kubus,", ",", "\"a\", b"}) {
        fill(QByteArray("[General]\nkeuze=") + odd + "\n");
        EXPECT_EQ(read(), std::nullopt) << odd;
    }
}

TEST_F(PreferencesTest, AStringIsReadHoweverItIsWritten) {
    const std::pair<const char*, QString> ways[]{
        {"keuze=kubus", kValue},
        {"keuze = kubus ", kValue},
        {"keuze=\"kubus\"", kValue},
        {"keuze=\"a, b\"", QStringLiteral("a, b")},
        {"keuze=\\x6b\\165\\142us", kValue},
        {"keuze=a\\nb\\tc\\\\d\\\"e", QStringLiteral("a\nb\tc\\d\"e")},
        {"keuze=\\xe9", QStringLiteral("é")},
        {"keuze=é", QStringLiteral("é")},
        {"keuze=@@x", QStringLiteral("@x")},
        {"keuze=bol\nkeuze=kubus", kValue},
        {"keuze=kubus\r", kValue},
    };
    for (const auto& [written, value] : ways) {
        fill(QByteArray("[general]\n") + written + "\n[anders]\nkeuze=bol\n");
        EXPECT_EQ(read(), value) << written;
        fill(written);
        EXPECT_EQ(read(), value) << written;
    }
}

TEST_F(PreferencesTest, KeysOfOtherSectionsAndCommentsAreNone) {
    fill("; keuze=bol\n[anders]\nkeuze=kubus\n");
    EXPECT_EQ(read(), std::nullopt);
    write(kValue);
    EXPECT_EQ(content(), "[General]\nkeuze=kubus\n\n; keuze=bol\n[anders]\nkeuze=kubus\n");
}

TEST_F(PreferencesTest, APipeInItsPlaceHoldsNothingAndIsNotWaitedFor) {
    ASSERT_EQ(mkfifo(file.toLocal8Bit().constData(), 0600), 0);
    QString path;
    EXPECT_EQ(Preferences::problem(kModule, path), ENOTSUP);
    EXPECT_EQ(path, file);
    EXPECT_EQ(read(), std::nullopt);
    const auto preferences = Preferences::forModule(kModule);
    preferences->setString(kKey, kValue);
    EXPECT_EQ(preferences->synchronize(), ENOTSUP);
    struct stat about {};
    ASSERT_EQ(stat(file.toLocal8Bit().constData(), &about), 0);
    EXPECT_TRUE(S_ISFIFO(about.st_mode));
}

TEST_F(PreferencesTest, AHugeFileIsNotReadAndStays) {
    fill("[General]\nkeuze=kubus\n");
    QFile huge(file);
    const qint64 size = qint64{Preferences::kLargest} + 1;
    ASSERT_TRUE(huge.resize(size - 1));
    EXPECT_EQ(read(), kValue);
    ASSERT_TRUE(huge.resize(size));
    QString path;
    EXPECT_EQ(Preferences::problem(kModule, path), EFBIG);
    EXPECT_EQ(read(), std::nullopt);
    write(kValue);
    EXPECT_EQ(QFileInfo(file).size(), size);
}

TEST_F(PreferencesTest, NoFileAndAReadableFileAreNoProblem) {
    QString path;
    EXPECT_EQ(Preferences::problem(kModule, path), 0);
    fill("rommel");
    EXPECT_EQ(Preferences::problem(kModule, path), 0);
}

TEST_F(PreferencesTest, WhatCouldNotBeWrittenIsNotSeenByALaterStore) {
    use(QStringLiteral("/dev/null"));
    write(kValue);
    EXPECT_EQ(read(), std::nullopt);
}

}  // namespace
