// SPDX-License-Identifier: MIT
#include "platform/render/egl/RendererProbe.h"

#include <gtest/gtest.h>
#include <xcb/xcb.h>

#include <cstdlib>
#include <fstream>
#include <string>

#include "tests/support/Xvfb.h"

namespace platform::test {

namespace {

constexpr RendererSigns kGpu{.forced = false,
                             .egl = true,
                             .server = true,
                             .sharesGpu = true,
                             .devices = 2,
                             .softwareDevices = 1};

TEST(RendererProbe, AServerThatSharesItsGpuIsAGpu) {
    EXPECT_FALSE(judgeRenderer(kGpu).software);
}

TEST(RendererProbe, TheEnvironmentHasTheLastWord) {
    RendererSigns signs = kGpu;
    signs.forced = true;
    EXPECT_TRUE(judgeRenderer(signs).software);
}

TEST(RendererProbe, AServerThatSharesNoGpuIsSoftwareWhateverDevicesThereAre) {
    RendererSigns signs = kGpu;
    signs.sharesGpu = false;
    EXPECT_TRUE(judgeRenderer(signs).software);
}

TEST(RendererProbe, WithoutAServerTheDevicesTell) {
    RendererSigns signs = kGpu;
    signs.server = signs.sharesGpu = false;
    EXPECT_FALSE(judgeRenderer(signs).software);
    signs.devices = signs.softwareDevices = 1;
    EXPECT_TRUE(judgeRenderer(signs).software);
}

TEST(RendererProbe, DevicesThatCannotBeListedTellNothing) {
    RendererSigns signs = kGpu;
    signs.devices = signs.softwareDevices = 0;
    EXPECT_FALSE(judgeRenderer(signs).software);
}

TEST(RendererProbe, WithoutEglThereIsNoGpu) {
    RendererSigns signs = kGpu;
    signs.egl = false;
    EXPECT_TRUE(judgeRenderer(signs).software);
}

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
        xcb_connection_t* const connection =
            xcb_connect(server.display().toLocal8Bit().constData(), nullptr);
        const bool software = probeRenderer(connection).software;
        xcb_disconnect(connection);
        const bool loaded = hasLoaded("libLLVM") || hasLoaded("libEGL_mesa");
        return software && !loaded ? 0 : 1;
    };
    EXPECT_EXIT(std::exit(probe()), testing::ExitedWithCode(0), "");
}

}  // namespace

}  // namespace platform::test
