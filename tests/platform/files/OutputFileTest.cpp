// SPDX-License-Identifier: MIT
#include "platform/files/OutputFile.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <sstream>
#include <thread>

#include "tests/support/TijdelijkeMap.h"

using platform::replaceFile;

namespace {

constexpr uid_t kNobody = 65534;

std::string contentOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// Returns what `act` does in a process of its own.
template <typename Act>
int inChild(Act act) {
    const pid_t child = fork();
    if (child == 0) _exit(act());
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// A pipe's reader, which is there from now on and waits for the first byte.
int readerOf(const std::string& pipe) {
    const int reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
    fcntl(reader, F_SETFL, 0);
    return reader;
}

void awaitByte(int reader) {
    pollfd wait{reader, POLLIN, 0};
    poll(&wait, 1, -1);
}

struct OutputFile : testing::Test {
    steun::TijdelijkeMap folder;
    const std::string path = (folder / "out").string();

    [[nodiscard]] long entries() const {
        return std::distance(std::filesystem::directory_iterator(folder / "."), {});
    }
};

TEST_F(OutputFile, IsMadeAndReplaced) {
    EXPECT_EQ(replaceFile(path, "one"), 0);
    EXPECT_EQ(contentOf(path), "one");
    EXPECT_EQ(replaceFile(path, std::string("tw\0o", 4)), 0);
    EXPECT_EQ(contentOf(path), std::string("tw\0o", 4));
    EXPECT_EQ(entries(), 1);
}

TEST_F(OutputFile, ANameWithoutAFolderIsInTheCurrentOne) {
    EXPECT_EQ(inChild([this] {
                  return chdir((folder / ".").c_str()) != 0 ? 1 : replaceFile("plain", "text");
              }),
              0);
    EXPECT_EQ(contentOf((folder / "plain").string()), "text");
}

TEST_F(OutputFile, ANewFileHasTheModeOfTheMaskAndAnOldOneKeepsItsOwn) {
    struct stat about {};
    EXPECT_EQ(inChild([this] {
                  umask(027);
                  return replaceFile(path, "x");
              }),
              0);
    ASSERT_EQ(stat(path.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0640U);
    chmod(path.c_str(), 0604);
    EXPECT_EQ(replaceFile(path, "y"), 0);
    ASSERT_EQ(stat(path.c_str(), &about), 0);
    EXPECT_EQ(about.st_mode & 0777, 0604U);
}

// A limit on a file's size fails a write as a full disk does: late, and in part.
TEST_F(OutputFile, WhenTheDiskTakesNoMoreTheOldFileStaysAndNothingIsLeft) {
    ASSERT_EQ(replaceFile(path, "old"), 0);
    for (const std::size_t size : {std::size_t{20}, std::size_t{1} << 20}) {
        EXPECT_EQ(inChild([&] {
                      signal(SIGXFSZ, SIG_IGN);
                      const rlimit few{10, 10};
                      setrlimit(RLIMIT_FSIZE, &few);
                      return replaceFile(path, std::string(size, 'n'));
                  }),
                  EFBIG);
        EXPECT_EQ(contentOf(path), "old");
        EXPECT_EQ(entries(), 1);
    }
}

// Devices of the test's own: a program that replaces devices would take the system's away.
TEST_F(OutputFile, ADeviceIsWrittenToAndNotReplaced) {
    const std::string full = path + "-full", null = path + "-null";
    if (mknod(full.c_str(), S_IFCHR | 0666, makedev(1, 7)) != 0 ||
        mknod(null.c_str(), S_IFCHR | 0666, makedev(1, 3)) != 0 || !std::ofstream(null).is_open())
        GTEST_SKIP() << "only root makes devices";
    EXPECT_EQ(replaceFile(full, "x"), ENOSPC);
    EXPECT_EQ(replaceFile(null, "x"), 0);
    for (const std::string& device : {full, null}) {
        struct stat about {};
        ASSERT_EQ(stat(device.c_str(), &about), 0);
        EXPECT_TRUE(S_ISCHR(about.st_mode)) << device;
    }
}

TEST_F(OutputFile, APipeIsWrittenToAndNotReplaced) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(replaceFile(path, "x"), ENXIO);
    const std::string text(300'000, 'p');  // more than a pipe holds
    const int reader = readerOf(path);
    std::string got;
    std::thread other([&] {
        awaitByte(reader);
        char part[4096];
        for (ssize_t count = 0; (count = read(reader, part, sizeof part)) > 0;)
            got.append(part, static_cast<std::size_t>(count));
    });
    EXPECT_EQ(replaceFile(path, text), 0);
    other.join();
    close(reader);
    EXPECT_EQ(got, text);
    struct stat about {};
    ASSERT_EQ(stat(path.c_str(), &about), 0);
    EXPECT_TRUE(S_ISFIFO(about.st_mode));
    EXPECT_EQ(entries(), 1);
}

TEST_F(OutputFile, AReaderThatGoesAwayIsAnErrorAndNoSignal) {
    ASSERT_EQ(mkfifo(path.c_str(), 0600), 0);
    const int reader = readerOf(path);
    std::thread other([&] {
        char part = 0;
        awaitByte(reader);
        EXPECT_EQ(read(reader, &part, 1), 1);
        close(reader);
    });
    EXPECT_EQ(replaceFile(path, std::string(1 << 20, 'p')), EPIPE);
    other.join();
    sigset_t waiting;
    sigpending(&waiting);
    EXPECT_EQ(sigismember(&waiting, SIGPIPE), 0);
}

TEST_F(OutputFile, OnesOwnLinkIsFollowedAndStays) {
    const std::string real = folder.bestand("real", "old");
    ASSERT_EQ(symlink("real", path.c_str()), 0);
    EXPECT_EQ(replaceFile(path, "new"), 0);
    EXPECT_EQ(contentOf(real), "new");
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    std::filesystem::remove(real);
    EXPECT_EQ(replaceFile(path, "again"), 0);
    EXPECT_EQ(contentOf(real), "again");
}

TEST_F(OutputFile, LinksInACircleAreAnError) {
    ASSERT_EQ(symlink("out", path.c_str()), 0);
    EXPECT_EQ(replaceFile(path, "x"), ELOOP);
}

TEST_F(OutputFile, AnotherUsersLinkIsNotFollowed) {
    // Root made it, and the caller is not root.
    EXPECT_EQ(inChild([] {
                  if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return -1;
                  return replaceFile("/dev/stdout", "x");
              }),
              ELOOP);
}

TEST_F(OutputFile, AnotherUsersLinkLeavesItsTargetAlone) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make another user's link";
    const std::string real = folder.bestand("real", "old");
    ASSERT_EQ(symlink(real.c_str(), path.c_str()), 0);
    ASSERT_EQ(lchown(path.c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(replaceFile(path, "new"), ELOOP);
    EXPECT_EQ(contentOf(real), "old");
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(entries(), 2);
}

TEST_F(OutputFile, AnotherUsersLinkToAFolderIsNotFollowed) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can make another user's link";
    std::filesystem::create_directories(folder / "real" / "deep");
    const std::string link = (folder / "link").string();
    ASSERT_EQ(symlink("real", link.c_str()), 0);
    const std::string out = (folder / "real" / "deep" / "out").string();
    // One's own link, and a link that leads through another.
    EXPECT_EQ(replaceFile(link + "/deep/out", "own"), 0);
    EXPECT_EQ(contentOf(out), "own");
    ASSERT_EQ(symlink("link/deep", (folder / "second").c_str()), 0);
    EXPECT_EQ(replaceFile((folder / "second" / "out").string(), "both"), 0);
    EXPECT_EQ(contentOf(out), "both");
    ASSERT_EQ(lchown(link.c_str(), kNobody, kNobody), 0);
    for (const char* way : {"link/deep/out", "link/deep/new", "link/./../real/deep/out",
                            "second/out", "second/../deep/out"}) {
        EXPECT_EQ(replaceFile((folder / way).string(), "x"), ELOOP) << way;
        EXPECT_EQ(platform::mayReplaceFile((folder / way).string()), ELOOP) << way;
    }
    EXPECT_EQ(contentOf(out), "both");
    EXPECT_FALSE(std::filesystem::exists(folder / "real" / "deep" / "new"));
}

// The system's own folders may be links, which root made.
TEST_F(OutputFile, RootsLinkToAFolderIsFollowedByAll) {
    if (geteuid() != 0) GTEST_SKIP() << "only root can act as root and as another";
    std::filesystem::create_directory(folder / "real");
    chmod((folder / "real").c_str(), 0777);
    chmod((folder / ".").c_str(), 0755);
    ASSERT_EQ(symlink("real", (folder / "link").c_str()), 0);
    EXPECT_EQ(inChild([this] {
                  if (setresuid(kNobody, kNobody, kNobody) != 0) return -1;
                  return replaceFile((folder / "link" / "out").string(), "x");
              }),
              0);
    EXPECT_EQ(contentOf((folder / "real" / "out").string()), "x");
}

TEST_F(OutputFile, WhatMayNotBeWrittenStaysAsItIs) {
    ASSERT_EQ(replaceFile(path, "old"), 0);
    chmod(path.c_str(), 0444);
    chmod((folder / ".").c_str(), 0777);
    EXPECT_EQ(inChild([this] {
                  if (geteuid() == 0 && setresuid(kNobody, kNobody, kNobody) != 0) return -1;
                  return replaceFile(path, "new");
              }),
              EACCES);
    EXPECT_EQ(contentOf(path), "old");
}

TEST_F(OutputFile, AFolderOrANameWithoutOneIsAnError) {
    EXPECT_EQ(replaceFile((folder / ".").string(), "x"), EISDIR);
    EXPECT_EQ(replaceFile((folder / "no" / "out").string(), "x"), ENOENT);
    EXPECT_EQ(replaceFile("", "x"), ENOENT);
    EXPECT_EQ(replaceFile("/", "x"), EISDIR);
    EXPECT_EQ(replaceFile((folder / "..").string(), "x"), EISDIR);
    EXPECT_EQ(replaceFile(path + "/", "x"), ENOENT);
    EXPECT_EQ(replaceFile(path, "x"), 0);
    EXPECT_EQ(replaceFile(path + "/", "x"), ENOTDIR);
    EXPECT_EQ(replaceFile(path + "/out", "x"), ENOTDIR);
    EXPECT_EQ(replaceFile((folder / std::string(300, 'x')).string(), "x"), ENAMETOOLONG);
    EXPECT_EQ(replaceFile(std::string(5000, '/') + "out", "x"), ENAMETOOLONG);
}

}  // namespace
