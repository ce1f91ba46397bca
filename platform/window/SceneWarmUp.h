// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <thread>

namespace platform {

class EglDisplay;

// Loads OpenGL on a thread of its own, on a machine with a GPU, while the caller makes a scene. The
// window's render thread then finds OpenGL loaded. The caller owns the object and keeps it until
// the scene shows; the destructor waits for the loading. Main thread.
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
