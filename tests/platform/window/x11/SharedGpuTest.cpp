// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "platform/render/egl/RendererProbe.h"
#include "platform/window/x11/EglOnX11.h"
#include "tests/support/Xvfb.h"

namespace platform::test {

namespace {

bool hasLoaded(const std::string& library) {
    std::ifstream maps("/proc/self/maps");
    std::string line;
    while (std::getline(maps, line)) {
        if (line.find(library) != std::string::npos) return true;
    }
    return false;
}

// In a process of its own, which has not loaded anything yet.
TEST(RendererProbeDeathTest, AnXServerWithoutAGpuIsFoundOutWithoutLoadingOpenGl) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto probe = [] {
        unsetenv("LIBGL_ALWAYS_SOFTWARE");
        const Xvfb server;
        const XConnection connection(server.display());
        const bool software = probeRenderer([&] { return sharesGpu(connection); }).software;
        const bool loaded = hasLoaded("libLLVM") || hasLoaded("libEGL_mesa");
        return software && !loaded ? 0 : 1;
    };
    EXPECT_EXIT(std::exit(probe()), testing::ExitedWithCode(0), "");
}

}  // namespace

}  // namespace platform::test
