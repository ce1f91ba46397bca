// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/view/Fade.h"
#include "platform/window/WindowDrawing.h"
#include "platform/window/x11/OwnWindow.h"

namespace platform {

// The parts of a window, which owns them. Main thread.
class WindowCore final : public OwnWindowDelegate {
  public:
    explicit WindowCore(Window& window);
    ~WindowCore() override;
    WindowCore(const WindowCore&) = delete;
    WindowCore& operator=(const WindowCore&) = delete;

    // Makes the Qt window, and the drawing where there is X.
    void makeOwn();
    void draw(std::uint32_t xWindow);

    void keyDown(const KeyEvent& event) override;
    void mouse(Mouse what, const MouseEvent& event) override;
    void closeAsked() override;
    void keysLost() override;

    void geometryChanged();
    // Whether there is any sense in frames may have changed.
    void updateWanted();
    // Other windows hide it.
    void setCovered(bool covered);
    [[nodiscard]] bool isHosts() const { return drawing && !own; }
    [[nodiscard]] QScreen* screen() const;
    [[nodiscard]] double scale() const;
    [[nodiscard]] QSizeF sizeInPoints() const;

    std::unique_ptr<OwnWindow> own;
    std::unique_ptr<WindowDrawing> drawing;
    std::function<void()> closed;
    Fade fade;

  private:
    double build(Frame& frame, double time);
    void fit();
    static void tellOfNoScenes(View& view);

    Window& window_;
    bool covered_ = false;
    ScreenObserver screens_;
};

}  // namespace platform
