// SPDX-License-Identifier: MIT
#pragma once

#include <atomic>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <thread>

#include "platform/time/MediaClock.h"
#include "platform/window/Surface.h"

namespace platform {

// Draws a window's frames on a thread of its own: always the latest one, and
// only where it differs from what the window shows. Main thread, but for what it
// calls. Allocates nothing per frame once the frames have grown.
class RenderThread final : public FrameSink {
  public:
    struct Actions {
        // Called on the render thread first of all; null where there is nothing
        // to draw on. It ends what it waits for when `ending` becomes readable.
        std::function<std::unique_ptr<Surface>(int ending)> makeSurface;
        // Called on the render thread at most once.
        std::function<void()> firstFrameShown;
        // Called there after each frame whose scene could not be drawn: the view
        // that a message finds may be another one than the view it was about.
        std::function<void()> scenesFailed;
        // Called there at most once; nothing is drawn any more.
        std::function<void(Surface::Result)> ended;
    };

    // The clock must be one that any thread may ask, and outlive this.
    RenderThread(const MediaClock& clock, Actions actions);
    ~RenderThread() override;
    RenderThread(const RenderThread&) = delete;
    RenderThread& operator=(const RenderThread&) = delete;

    void submit(Frame& frame) override;

    // The window has lost what it showed there, in pixels.
    void expose(const QRect& rect);

    [[nodiscard]] std::uint64_t framesDrawn() const { return frames_; }
    // The drawer of the last frame; empty until the surface is made.
    [[nodiscard]] QString drawer() const;
    [[nodiscard]] int rung() const { return rung_; }

  private:
    void run();
    Surface::Result work(Surface& surface);
    Surface::Result show(Surface& surface);
    bool waitForWork();

    void noteDrawer(const Surface& surface);

    const MediaClock& clock_;
    const Actions actions_;
    mutable std::mutex mutex_;
    std::condition_variable wake_;
    // Under the mutex.
    Frame waiting_;
    bool hasWaiting_ = false;
    bool ending_ = false;
    std::vector<QRect> exposed_;
    QString drawer_;

    // For the render thread alone.
    Frame next_;
    Frame shown_;
    bool hasNext_ = false;
    bool hasShown_ = false;
    std::vector<QRect> damage_;
    std::vector<QRect> lost_;

    std::atomic<std::uint64_t> frames_{0};
    std::atomic<int> rung_{0};
    const int endingFd_;
    std::thread thread_;
};

}  // namespace platform
