// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <condition_variable>
#include <memory>
#include <mutex>

#include "platform/window/GlSurface.h"
#include "platform/window/wayland/ShellSurface.h"

struct wl_egl_window;

namespace platform::wayland {

// The place where OpenGL shows a window's pictures. The place is open while the compositor
// accepts pictures of the window. A driver commits by itself, on the render thread, as soon
// as a picture is swapped; the place has each commit ask for the compositor's answers.
//
// At most one picture waits for its answer, so a compositor that stops answering stops the
// drawing outside the driver. Within the driver a swap waits without end for a buffer where a
// compositor answers and releases none, and for a compositor that stops during the driver's
// first requests. Neither holds up another window, and close() bounds both.
//
// Shared by the native window (main thread) and the target of its surface (render thread).
// The connection and the shell surface outlive the time that the place is open.
class EglPlace {
  public:
    explicit EglPlace(wl_display* display);
    ~EglPlace();
    EglPlace(const EglPlace&) = delete;
    EglPlace& operator=(const EglPlace&) = delete;

    // Main thread.
    void open(ShellSurface& shell);
    // Waits until the driver is done, with a frame or with its first requests, and ends what it
    // has of the surface. After seconds of waiting the compositor counts as absent, and the
    // connection ends, as it does for one that never answers.
    void close();
    // Sets the size of the pictures; pictures of another size are skipped.
    void setSize(QSize pixels, const ShellSurface::Picture& picture);
    // Reports that the compositor accepts the next picture.
    void answered();
    // The file is readable after the driver used the connection: events for the main thread
    // may have been read, and commits of the main thread may wait.
    [[nodiscard]] int file() const { return used_; }
    void acknowledge() const;
    // The file is readable while the driver does not return, some times a second. A driver that
    // waits has read the main thread's events too, which no file tells of.
    [[nodiscard]] int lateFile() const { return late_; }
    void acknowledgeLate() const;

    // Makes the target for a window's OpenGL, with the display on which the target draws;
    // null where the driver has no OpenGL for the compositor. `ending` as for
    // NativeWindow::SurfaceMaker. Render thread.
    [[nodiscard]] static std::unique_ptr<EglTarget> target(std::shared_ptr<EglPlace> place,
                                                           int ending);

  private:
    class Target;
    struct WindowEnd {
        void operator()(wl_egl_window* window) const;
    };

    // Render thread, as in EglTarget.
    [[nodiscard]] EglWindowSurface* begin(const std::shared_ptr<EglDisplay>& display, QSize size,
                                          int ending);
    bool swap(std::span<const QRect> boxes, bool opaque);
    void end();
    // The render thread goes into the driver, and is out of it.
    void enterDriver() const;
    void leaveDriver() const;
    void tellOfUse() const;
    // Waits until the compositor accepts a picture or the place changes; false if all waiting
    // must end.
    [[nodiscard]] bool waits(int ending) const;
    bool makeSurface(const std::shared_ptr<EglDisplay>& display);

    wl_display* const display_;
    const int used_, changed_;
    const int late_;  // a timer of the kernel's, which needs no thread of the program
    mutable std::mutex mutex_;
    std::condition_variable rested_;
    // The mutex guards the members below. While a frame is drawn, the render thread alone uses
    // the surfaces and the main thread changes nothing else of them than the sizes.
    ShellSurface* shell_ = nullptr;  // while open
    QSize pixels_;
    ShellSurface::Picture picture_, drawn_;  // of the next frame, and of the present one
    bool drawing_ = false;                   // the render thread is in the driver
    bool unanswered_ = false;
    bool whole_ = true;    // the next picture differs everywhere from the last one
    bool failed_ = false;  // the driver refused the surface
    // The surface ends before its window.
    std::unique_ptr<wl_egl_window, WindowEnd> window_;
    std::unique_ptr<EglWindowSurface> surface_;
};

}  // namespace platform::wayland
