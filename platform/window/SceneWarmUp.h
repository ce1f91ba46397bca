// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <thread>

namespace platform {

class EglDisplay;

// Loads OpenGL, where there is a GPU for it, on a thread of its own, beside whatever makes the
// scene that is about to be shown: the window's render thread then finds it there. To be kept until
// the scene shows; letting go earlier waits for the loading.
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
