// SPDX-License-Identifier: MIT
#include "platform/files/InputFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "tests/support/TijdelijkeMap.h"

using platform::readRegularFile;

namespace {

struct InputFile : testing::Test {
    steun::TijdelijkeMap folder;
};

TEST_F(InputFile, ReadsUpToTheLimitAndNoByteMore) {
    const std::string path = folder.bestand("ten", std::string("01234\0"
                                                               "6789",
                                                               10));
    const auto whole = readRegularFile(path, 10);
    EXPECT_EQ(whole.error, 0);
    EXPECT_EQ(whole.bytes, std::string("01234\0"
                                       "6789",
                                       10));
    const auto less = readRegularFile(path, 9);
    EXPECT_EQ(less.error, EFBIG);
    EXPECT_TRUE(less.bytes.empty());
}

TEST_F(InputFile, AnEmptyFileIsOne) {
    const auto content = readRegularFile(folder.bestand("none", ""), 10);
    EXPECT_EQ(content.error, 0);
    EXPECT_TRUE(content.bytes.empty());
}

TEST_F(InputFile, AFileOfUnknownLengthIsReadToItsEnd) {
    EXPECT_GT(readRegularFile("/proc/self/status", 1 << 20).bytes.size(), 100U);
    EXPECT_EQ(readRegularFile("/proc/self/status", 100).error, EFBIG);
}

// A file without data on the disk: reading it would take its whole size in memory.
TEST_F(InputFile, AHugeFileIsNotRead) {
    const std::string path = folder.bestand("huge", "");
    ASSERT_EQ(truncate(path.c_str(), off_t{1} << 40), 0);
    EXPECT_EQ(readRegularFile(path, 1 << 20).error, EFBIG);
}

TEST_F(InputFile, APipeIsNotWaitedFor) {
    const std::string path = (folder / "pipe").string();
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(readRegularFile(path, 10).error, ENOTSUP);
}

TEST_F(InputFile, ADeviceIsNoFileAndAFolderIsOneOfItsOwn) {
    EXPECT_EQ(readRegularFile("/dev/zero", 10).error, ENOTSUP);
    EXPECT_EQ(readRegularFile((folder / ".").string(), 10).error, EISDIR);
}

TEST_F(InputFile, AMissingFileSaysSo) {
    EXPECT_EQ(readRegularFile((folder / "no").string(), 10).error, ENOENT);
    EXPECT_EQ(readRegularFile("", 10).error, ENOENT);
}

TEST_F(InputFile, LinksAreFollowed) {
    const std::string path = folder.bestand("real", "text");
    const std::string link = (folder / "link").string();
    ASSERT_EQ(symlink(path.c_str(), link.c_str()), 0);
    EXPECT_EQ(readRegularFile(link, 10).bytes, "text");
}

}  // namespace
