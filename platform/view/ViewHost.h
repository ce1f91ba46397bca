// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

class View;
class Window;

// The part of a window that its views know. The window implements the interface. The views
// do not own the window. Main thread.
class ViewHost {
  public:
    // The window itself, for callers that know windows.
    [[nodiscard]] virtual Window* asWindow() = 0;
    [[nodiscard]] virtual bool isKey() const = 0;
    // Reports that a view looks different; the window builds another frame.
    virtual void setNeedsFrame() = 0;
    // Reports that a view leaves the window or is destroyed.
    virtual void detached(const View* view) = 0;

  protected:
    ~ViewHost() = default;
};

}  // namespace platform
