// SPDX-License-Identifier: MIT
#include "platform/files/ScratchFile.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "tests/support/TijdelijkeMap.h"

using platform::ScratchFile;

namespace {

std::string contentOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

// With the temporary folder in one of its own.
class ScratchFileTest : public testing::Test {
  protected:
    steun::TijdelijkeMap map;
    void SetUp() override { setenv("TMPDIR", (map / "").c_str(), 1); }
    void TearDown() override { unsetenv("TMPDIR"); }
    [[nodiscard]] long files() const {
        return std::distance(std::filesystem::directory_iterator(map / ""),
                             std::filesystem::directory_iterator());
    }
};

TEST_F(ScratchFileTest, AnotherProgramWritesItByItsPathAndNoNameIsSeen) {
    const ScratchFile file;
    ASSERT_EQ(file.error(), 0);
    EXPECT_EQ(files(), 0);
    ASSERT_EQ(std::system(("printf abcdef > " + file.path()).c_str()), 0);
    EXPECT_EQ(contentOf(file.path()), "abcdef");
    EXPECT_EQ(files(), 0);
    const std::string film = (map / "film").string();
    EXPECT_EQ(file.copyOver(film), 0);
    EXPECT_EQ(contentOf(film), "abcdef");
    EXPECT_EQ(files(), 1);
}

TEST_F(ScratchFileTest, AnEmptyOneMakesAnEmptyFile) {
    const std::string film = (map / "film").string();
    std::ofstream(film) << "old";
    EXPECT_EQ(ScratchFile().copyOver(film), 0);
    EXPECT_TRUE(std::filesystem::exists(film));
    EXPECT_EQ(contentOf(film), "");
}

TEST_F(ScratchFileTest, ARefusalIsTold) {
    EXPECT_EQ(ScratchFile().copyOver((map / "none/film").string()), ENOENT);
    setenv("TMPDIR", (map / "none").c_str(), 1);
    EXPECT_EQ(ScratchFile().error(), ENOENT);
}

}  // namespace
