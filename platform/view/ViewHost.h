// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class View;
class Window;

// The window as its tree of views sees it. The window implements this
// interface; the views own nothing of it. Main thread.
class ViewHost {
  public:
    // The window itself, for those who may know windows.
    [[nodiscard]] virtual Window* asWindow() = 0;
    [[nodiscard]] virtual bool isKey() const = 0;
    // A view looks different: the window builds another frame.
    virtual void setNeedsFrame() = 0;
    // The view leaves the window, or is destroyed.
    virtual void detached(const View* view) = 0;

  protected:
    ~ViewHost() = default;
};

}  // namespace platform
