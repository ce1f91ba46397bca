// SPDX-License-Identifier: MIT
#include "platform/window/SceneWarmUp.h"

#include "platform/render/egl/Egl.h"
#include "platform/window/SurfaceFor.h"

namespace platform {

SceneWarmUp::SceneWarmUp(DrawerChoice drawer)
    : thread_([this, drawer] {
          if (leadsToOpenGl(drawer, {})) display_ = EglDisplay::offscreen();
      }) {}

SceneWarmUp::~SceneWarmUp() {
    thread_.join();
}

}  // namespace platform
