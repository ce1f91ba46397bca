// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <thread>

#include "platform/window/Surface.h"

namespace platform {

class EglDisplay;

// Loads OpenGL, where the choice leads to OpenGL, on a thread that it owns, while the caller
// makes a scene. The window's render thread then finds OpenGL loaded. The caller owns the warm-up
// and keeps it until the scene shows; the destructor waits for the loading. Main thread.
class SceneWarmUp {
  public:
    explicit SceneWarmUp(DrawerChoice drawer);
    ~SceneWarmUp();
    SceneWarmUp(const SceneWarmUp&) = delete;
    SceneWarmUp& operator=(const SceneWarmUp&) = delete;

  private:
    std::shared_ptr<EglDisplay> display_;
    std::thread thread_;
};

}  // namespace platform
