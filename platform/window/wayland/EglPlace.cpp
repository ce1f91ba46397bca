// SPDX-License-Identifier: MIT
#include "platform/window/wayland/EglPlace.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <sys/timerfd.h>
#include <unistd.h>
#include <wayland-egl.h>

#include <array>
#include <chrono>
#include <utility>
#include <vector>

#include "platform/window/wayland/Connection.h"
#include "platform/window/wayland/DamageBoxes.h"

namespace platform::wayland {

namespace {

constexpr unsigned kPlatformWayland = 0x31D8;  // EGL_PLATFORM_WAYLAND_EXT
constexpr int kDepth = 32, kAlpha = 8;         // bits of a pixel
constexpr long kLate = 50'000'000;             // nanoseconds in the driver

std::shared_ptr<EglDisplay> eglDisplayOn(wl_display* display) {
    if (!EglDisplay::clientOffers("EGL_EXT_platform_wayland") &&
        !EglDisplay::clientOffers("EGL_KHR_platform_wayland"))
        return nullptr;
    return EglDisplay::on({.name = kPlatformWayland, .native = display, .isConnected = [display] {
                               return wl_display_get_error(display) == 0;
                           }});
}

// Arms the timer, to be over again and again, or disarms it at 0.
void setTimer(int timer, long nanoseconds) {
    const timespec time{.tv_sec = 0, .tv_nsec = nanoseconds};
    const itimerspec alarm{.it_interval = time, .it_value = time};
    timerfd_settime(timer, 0, &alarm, nullptr);
}

void empty(int file) {
    eventfd_t ignored = 0;
    eventfd_read(file, &ignored);
}

}  // namespace

// Every call that may read from the connection is followed by tellOfUse().
class EglPlace::Target final : public EglTarget {
  public:
    Target(std::shared_ptr<EglPlace> place, std::shared_ptr<EglDisplay> display, int ending)
        : place_(std::move(place)), display_(std::move(display)), ending_(ending) {}

    [[nodiscard]] const std::shared_ptr<EglDisplay>& display() const override { return display_; }
    [[nodiscard]] EglWindowSurface* begin(QSize size) override {
        return place_->begin(display_, size, ending_);
    }
    bool swap(const Frame& frame, std::span<const QRect> damage) override {
        joinDamage(damage, boxes_);
        return place_->swap(boxes_, frame.opacity >= 1.0 && frame.background.a >= 1.0F);
    }
    void end() override { place_->end(); }
    // The frame callback gives the pace. A driver that waited for a callback of its own would
    // hold up the end of a hidden window.
    [[nodiscard]] int swapInterval() const override { return 0; }
    [[nodiscard]] Surface::Result state() override {
        if (!display_->isConnected()) return Surface::Result::ServerGone;
        const std::lock_guard lock(place_->mutex_);
        return place_->failed_ ? Surface::Result::WindowGone : Surface::Result::Drawn;
    }

  private:
    const std::shared_ptr<EglPlace> place_;
    const std::shared_ptr<EglDisplay> display_;
    const int ending_;
    std::vector<QRect> boxes_;
};

void EglPlace::WindowEnd::operator()(wl_egl_window* window) const {
    wl_egl_window_destroy(window);
}

EglPlace::EglPlace(wl_display* display)
    : display_(display),
      used_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      changed_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      late_(timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)) {}

EglPlace::~EglPlace() {
    ::close(used_);
    ::close(changed_);
    ::close(late_);
}

void EglPlace::open(ShellSurface& shell) {
    const std::lock_guard lock(mutex_);
    shell_ = &shell;
    unanswered_ = false;
    whole_ = true;
}

void EglPlace::close() {
    std::unique_lock lock(mutex_);
    shell_ = nullptr;
    eventfd_write(changed_, 1);
    const auto rests = [this] { return !drawing_; };
    if (!rested_.wait_for(lock, kPatience, rests)) {
        // The end of the connection ends every wait of the driver.
        shutdown(wl_display_get_fd(display_), SHUT_RDWR);
        rested_.wait(lock, rests);
    }
    surface_.reset();
    window_.reset();
}

void EglPlace::setSize(QSize pixels, const ShellSurface::Picture& picture) {
    const std::lock_guard lock(mutex_);
    pixels_ = pixels;
    picture_ = picture;
    eventfd_write(changed_, 1);
}

void EglPlace::answered() {
    const std::lock_guard lock(mutex_);
    if (std::exchange(unanswered_, false)) eventfd_write(changed_, 1);
}

void EglPlace::acknowledge() const {
    empty(used_);
}

void EglPlace::acknowledgeLate() const {
    empty(late_);
}

void EglPlace::enterDriver() const {
    setTimer(late_, kLate);
}

void EglPlace::leaveDriver() const {
    setTimer(late_, 0);
}

void EglPlace::tellOfUse() const {
    eventfd_write(used_, 1);
}

std::unique_ptr<EglTarget> EglPlace::target(std::shared_ptr<EglPlace> place, int ending) {
    {
        // The driver's first requests wait for the compositor.
        const std::lock_guard lock(place->mutex_);
        place->drawing_ = true;
    }
    place->enterDriver();
    auto display = eglDisplayOn(place->display_);
    place->end();
    if (!display) return nullptr;
    return std::make_unique<Target>(std::move(place), std::move(display), ending);
}

bool EglPlace::waits(int ending) const {
    std::array<pollfd, 2> files{pollfd{.fd = ending, .events = POLLIN, .revents = 0},
                                pollfd{.fd = changed_, .events = POLLIN, .revents = 0}};
    poll(files.data(), files.size(), -1);
    empty(changed_);
    return files[0].revents == 0;
}

EglWindowSurface* EglPlace::begin(const std::shared_ptr<EglDisplay>& display, QSize size,
                                  int ending) {
    std::unique_lock lock(mutex_);
    while (shell_ && unanswered_ && size == pixels_) {
        lock.unlock();
        const bool goesOn = waits(ending);
        lock.lock();
        if (!goesOn) return nullptr;
    }
    if (!shell_ || size != pixels_ || !makeSurface(display)) {
        whole_ = true;
        return nullptr;
    }
    wl_egl_window_resize(window_.get(), size.width(), size.height(), 0, 0);
    drawn_ = picture_;
    drawing_ = true;
    enterDriver();
    return surface_.get();
}

bool EglPlace::makeSurface(const std::shared_ptr<EglDisplay>& display) {
    if (surface_ || failed_) return surface_ != nullptr;
    void* const config = EglWindowSurface::configWhere(*display, [](const EglConfigTraits& traits) {
        return traits.depth == kDepth && traits.alpha == kAlpha;
    });
    window_.reset(wl_egl_window_create(shell_->surface(), pixels_.width(), pixels_.height()));
    if (window_) surface_ = EglWindowSurface::create(display, config, window_.get());
    failed_ = !surface_;
    tellOfUse();
    return surface_ != nullptr;
}

bool EglPlace::swap(std::span<const QRect> boxes, bool opaque) {
    ShellSurface* shell = nullptr;
    {
        const std::lock_guard lock(mutex_);
        shell = shell_;
        // A surface that is about to end shows nothing more.
        if (!shell) return true;
        if (std::exchange(whole_, false)) boxes = {};
        unanswered_ = true;
    }
    drawn_.opaque = opaque;
    return shell->show(drawn_, [&] { return surface_->swap(boxes); });
}

void EglPlace::end() {
    leaveDriver();
    {
        const std::lock_guard lock(mutex_);
        drawing_ = false;
    }
    rested_.notify_all();
    tellOfUse();
}

}  // namespace platform::wayland
