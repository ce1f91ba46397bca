// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <thread>

namespace platform {

class EglDisplay;

// Loads OpenGL on a thread of its own while the caller makes a scene, so that the window's
// render thread finds OpenGL loaded. The owner keeps the warm-up until the scene shows;
// dropping it earlier waits for the loading.
class SceneWarmUp {
  public:
    SceneWarmUp();
    ~SceneWarmUp();
    SceneWarmUp(const SceneWarmUp&) = delete;
    SceneWarmUp& operator=(const SceneWarmUp&) = delete;

  private:
    std::shared_ptr<EglDisplay> display_;
    std::thread thread_;
};

}  // namespace platform
