// SPDX-License-Identifier: MIT
#include "platform/resources/ResourceFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>

namespace {

const int kInThisProgram = 0;

// The folder that belongs to this test program.
class ResourceFolder : public testing::Test {
  protected:
    ResourceFolder() { std::filesystem::create_directories(folder_); }
    const std::filesystem::path folder_ =
        std::filesystem::canonical("/proc/self/exe").parent_path() / "resources";
};

TEST_F(ResourceFolder, LiesBesideTheFileThatTheAddressIsIn) {
    const std::string name = "a file of the test " + std::to_string(getpid());
    std::ofstream(folder_ / name) << "x";
    EXPECT_EQ(platform::resourcePath(&kInThisProgram, name), folder_ / name);
    std::filesystem::remove(folder_ / name);
}

TEST_F(ResourceFolder, AMissingFileIsNothing) {
    EXPECT_EQ(platform::resourcePath(&kInThisProgram, "no such file"), std::nullopt);
}

TEST_F(ResourceFolder, AFolderIsNoFile) {
    EXPECT_EQ(platform::resourcePath(&kInThisProgram, "../resources"), std::nullopt);
}

TEST_F(ResourceFolder, AnAddressInNoFileIsNothing) {
    const auto onTheHeap = std::make_unique<int>(0);
    EXPECT_EQ(platform::resourcePath(onTheHeap.get(), "x"), std::nullopt);
}

}  // namespace
