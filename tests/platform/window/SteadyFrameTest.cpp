// SPDX-License-Identifier: MIT
// A steady frame takes nothing from the heap, on both threads together. The program
// is its own, since it replaces operator new.
#include <gtest/gtest.h>

#include <thread>

#include "platform/window/Window.h"
#include "tests/support/AllocationCounter.h"
#include "tests/support/FallingColumns.h"
#include "tests/support/KeepDriver.h"
#include "tests/support/Until.h"
#include "tests/support/WindowSystems.h"
#include "tests/support/Xvfb.h"

using platform::DrawerChoice;
using platform::ManualClock;
using platform::Window;
using platform::WindowServer;

namespace {

constexpr double kBeat = 1.0 / 60.0;

struct Case {
    const char* name;
    const char* screen;
    DrawerChoice drawer;
    bool sharedMemory;
};

std::vector<std::string> wordsFor(const Case& c) {
    if (c.sharedMemory) return {};
    return {"-extension", "MIT-SHM"};
}

struct SteadyFrame : testing::TestWithParam<Case> {
    const Xvfb x{GetParam().screen, wordsFor(GetParam())};
    ManualClock clock{1000.0};
    WindowServer server{clock,
                        {.drawer = GetParam().drawer, .system = systemOn(clock, x.display())}};
};

TEST_P(SteadyFrame, TakesNothingFromTheHeap) {
    ASSERT_TRUE(x.isRunning());
    const xcb_window_t id = x.makeWindow({.width = 500, .height = 400});
    Window window(server, hostRef(id));
    FallingColumns columns({.size = {500, 400}});
    columns.fill(clock.now());
    window.contentView()->setWantsLayer(true);
    window.contentView()->layer()->setBackgroundColor(Qt::black);
    const std::shared_ptr<platform::Layer> root(&columns.root(), [](auto*) {});
    window.contentView()->layer()->addSublayer(root);
    // Moves on until another frame is on the screen.
    const auto frame = [&] {
        const auto before = window.statistics().frames;
        for (int beats = 0; beats < 600 && window.statistics().frames == before; ++beats) {
            clock.advance(kBeat);
            for (int i = 0; i < 1000 && window.statistics().frames == before; ++i)
                std::this_thread::yield();
        }
        return window.statistics().frames > before;
    };
    ASSERT_TRUE(until([&] {
        clock.advance(0.0);
        return window.statistics().frames > 0;
    }));
    // A whole cycle of every drop, so that everything has grown to its size.
    clock.advance(20.0);
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(frame());
    const std::size_t before = AllocationCounter::total();
    for (int i = 0; i < 300; ++i)
        ASSERT_TRUE(frame());
    EXPECT_EQ(AllocationCounter::total() - before, 0U);
    root->removeFromSuperlayer();
}

INSTANTIATE_TEST_SUITE_P(
    Drawers, SteadyFrame,
    testing::Values(Case{"Shared", "640x480x24", DrawerChoice::Cpu, true},
                    Case{"SharedOf16Bits", "640x480x16", DrawerChoice::Cpu, true},
                    Case{"OverTheConnection", "640x480x24", DrawerChoice::Cpu, false},
                    Case{"OpenGl", "640x480x24", DrawerChoice::OpenGl, true}),
    [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
