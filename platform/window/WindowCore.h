// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

#include "platform/view/Fade.h"
#include "platform/window/Window.h"
#include "platform/window/WindowDrawing.h"

namespace platform {

// A window's implementation, hidden from callers that only show views in it. Owned by its
// window. Main thread.
class WindowCore final : public NativeWindowDelegate {
  public:
    explicit WindowCore(Window& window);
    ~WindowCore();
    WindowCore(const WindowCore&) = delete;
    WindowCore& operator=(const WindowCore&) = delete;

    // Makes a native window of the program's own, adopts the host's, or fills a place, and
    // makes the drawing where the window can be drawn on.
    void makeOwn();
    void adopt(const HostRef& host);
    void fill(PicturePlace& place);

    void geometryChanged() override;
    void visibilityChanged() override;
    void readyForFrame(bool ready) override;
    void presented(double time, double interval) override;
    void exposed(const QRect& rect) override;
    void keyDown(const KeyEvent& event) override;
    void mouse(Mouse what, const MouseEvent& event) override;
    void closeAsked() override;
    void gone() override;

    // Updates whether frames are useful now.
    void updateWanted();
    [[nodiscard]] bool isHosts() const { return isHosts_; }
    [[nodiscard]] std::optional<Screen> screen() const;
    [[nodiscard]] double scale() const;
    [[nodiscard]] QSizeF sizeInPoints() const;

    // The drawing is destroyed before the native window.
    std::unique_ptr<NativeWindow> native;
    std::unique_ptr<WindowDrawing> drawing;
    std::function<void()> closed;
    Fade fade;

  private:
    void draw();
    double build(Frame& frame, double time);
    void fit();
    void setPace();
    void show(double opacity);
    static void tellOfNoScenes(View& view);

    Window& window_;
    const bool fades_;  // the window system fades whole windows
    bool isHosts_ = false;
    bool gone_ = false;
    // Seconds from picture to picture, as the display was seen to show them.
    std::optional<double> seenInterval_;
    ScreenObserver screens_;
};

}  // namespace platform
