// SPDX-License-Identifier: MIT
#include "platform/render/egl/RendererProbe.h"

#include <gtest/gtest.h>

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

}  // namespace

}  // namespace platform::test
