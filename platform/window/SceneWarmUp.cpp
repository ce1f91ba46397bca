// SPDX-License-Identifier: MIT
#include "platform/window/SceneWarmUp.h"

#include "platform/render/egl/Egl.h"
#include "platform/render/egl/RendererProbe.h"

namespace platform {

SceneWarmUp::SceneWarmUp()
    : thread_([this] {
          if (!probeRenderer({}).software) display_ = EglDisplay::offscreen();
      }) {}

SceneWarmUp::~SceneWarmUp() {
    thread_.join();
}

}  // namespace platform
