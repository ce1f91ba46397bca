// SPDX-License-Identifier: MIT
// Keeps the OpenGL driver loaded to the very end of a test program, so that a
// leak checker can tell the driver's leaks from ours. Include from one source
// per program.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "platform/render/egl/Egl.h"

namespace {

[[gnu::used]] std::shared_ptr<platform::EglDisplay>* driver = nullptr;
struct KeepDriver : testing::Environment {
    void SetUp() override { driver = new std::shared_ptr(platform::EglDisplay::offscreen()); }
};
[[maybe_unused]] const auto* const kKeepDriver = testing::AddGlobalTestEnvironment(new KeepDriver);

}  // namespace
