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

// Draws a window's frames on a thread of its own: always the latest frame, and only the
// parts that differ from the window's picture. Owned by the window's drawing. Main thread,
// except the actions. Allocates nothing per frame once the frames have grown.
class RenderThread final : public FrameSink {
  public:
    struct Actions {
        // Called first, on the render thread; null where the window cannot be drawn on. The
        // surface ends its waiting when `ending` becomes readable.
        std::function<std::unique_ptr<Surface>(int ending)> makeSurface;
        // Called on the render thread at most once.
        std::function<void()> firstFrameShown;
        // Called on the render thread after each frame whose scene could not be drawn. A
        // message to the main thread may arrive after a change of the window's view.
        std::function<void()> scenesFailed;
        // Called on the render thread at most once; nothing is drawn after it.
        std::function<void(Surface::Result)> ended;
    };

    // Any thread must be able to ask the clock, which outlives the render thread.
    RenderThread(const MediaClock& clock, Actions actions);
    ~RenderThread() override;
    RenderThread(const RenderThread&) = delete;
    RenderThread& operator=(const RenderThread&) = delete;

    void submit(Frame& frame) override;

    // Reports that the window lost its picture in `rect`, in pixels.
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
    // The members below are guarded by the mutex.
    Frame waiting_;
    bool hasWaiting_ = false;
    bool ending_ = false;
    std::vector<QRect> exposed_;
    QString drawer_;

    // The members below belong to the render thread alone.
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
