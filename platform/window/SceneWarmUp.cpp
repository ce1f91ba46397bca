// SPDX-License-Identifier: MIT
#include "platform/window/SceneWarmUp.h"

#include "platform/render/egl/Egl.h"

namespace platform {

SceneWarmUp::SceneWarmUp() : thread_([this] { display_ = EglDisplay::offscreen(); }) {}

SceneWarmUp::~SceneWarmUp() {
    thread_.join();
}

}  // namespace platform
