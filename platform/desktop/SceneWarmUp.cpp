// SPDX-License-Identifier: MIT
#include "platform/desktop/SceneWarmUp.h"

#include "platform/render/Egl.h"

namespace platform {

SceneWarmUp::SceneWarmUp() : thread_([this] { display_ = EglDisplay::offscreen(); }) {}

SceneWarmUp::~SceneWarmUp() {
    thread_.join();
}

}  // namespace platform
