// SPDX-License-Identifier: MIT
#include "platform/window/RenderThread.h"

#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <utility>

namespace platform {

RenderThread::RenderThread(const MediaClock& clock, Actions actions)
    : clock_(clock),
      actions_(std::move(actions)),
      endingFd_(eventfd(0, EFD_CLOEXEC)),
      thread_([this] { run(); }) {
    pthread_setname_np(thread_.native_handle(), "render");
}

RenderThread::~RenderThread() {
    {
        const std::lock_guard lock(mutex_);
        ending_ = true;
    }
    wake_.notify_one();
    eventfd_write(endingFd_, 1);
    thread_.join();
    close(endingFd_);
}

void RenderThread::submit(Frame& frame) {
    {
        const std::lock_guard lock(mutex_);
        std::swap(waiting_, frame);
        hasWaiting_ = true;
    }
    wake_.notify_one();
}

void RenderThread::expose(const QRect& rect) {
    {
        const std::lock_guard lock(mutex_);
        exposed_.push_back(rect);
    }
    wake_.notify_one();
}

QString RenderThread::drawer() const {
    const std::lock_guard lock(mutex_);
    return drawer_;
}

bool RenderThread::waitForWork() {
    std::unique_lock lock(mutex_);
    wake_.wait(lock, [this] { return ending_ || hasWaiting_ || !exposed_.empty(); });
    if (ending_) return false;
    hasNext_ = std::exchange(hasWaiting_, false);
    if (hasNext_) std::swap(next_, waiting_);
    lost_.clear();
    std::swap(lost_, exposed_);
    return true;
}

void RenderThread::run() {
    const std::unique_ptr<Surface> surface = actions_.makeSurface(endingFd_);
    if (surface) noteDrawer(*surface);
    Surface::Result result = surface ? Surface::Result::Drawn : Surface::Result::WindowGone;
    while (result == Surface::Result::Drawn && waitForWork())
        result = work(*surface);
    if (result != Surface::Result::Drawn) actions_.ended(result);
}

Surface::Result RenderThread::work(Surface& surface) {
    if (!lost_.empty() && hasShown_) {
        const Surface::Result result = surface.repair(shown_, lost_);
        if (result != Surface::Result::Drawn) return result;
    }
    return hasNext_ ? show(surface) : Surface::Result::Drawn;
}

void RenderThread::noteDrawer(const Surface& surface) {
    rung_ = surface.rung();
    software_ = surface.isSoftware();
    const std::lock_guard lock(mutex_);
    if (drawer_ != surface.drawer()) drawer_ = surface.drawer();
}

Surface::Result RenderThread::show(Surface& surface) {
    const double begin = clock_.now();
    if (hasShown_) {
        findFrameDamage(shown_, next_, damage_);
    } else {
        damage_.assign(1, QRect(QPoint(0, 0), next_.grid.size));
    }
    std::swap(shown_, next_);
    if (damage_.empty()) return Surface::Result::Drawn;
    Surface::Result result = surface.draw(shown_, damage_);
    if (!hasShown_ && result == Surface::Result::Drawn) result = surface.finish();
    if (result != Surface::Result::Drawn) return result;
    surface.frameTook(clock_.now() - begin);
    noteDrawer(surface);
    if (surface.failsScenes()) actions_.scenesFailed();
    ++frames_;
    if (!std::exchange(hasShown_, true)) actions_.firstFrameShown();
    return result;
}

}  // namespace platform
