// SPDX-License-Identifier: MIT
#include "platform/window/wayland/WaylandWindow.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "platform/window/SurfaceFor.h"
#include "platform/window/wayland/DamageBoxes.h"
#include "platform/window/wayland/ShmSurface.h"
#include "platform/window/wayland/WaylandSystem.h"

namespace platform::wayland {

namespace {

// The limits exceed any display, and three pictures within them fit into memory.
constexpr int kLongest = 16384;               // pixels
constexpr double kMostPixels = 64.0 * 1.0e6;  // of one picture
// The surface is not made again after a compositor has closed it this often.
constexpr int kMostTaken = 3;

}  // namespace

const wl_callback_listener WaylandWindow::kAgain = {
    .done = [](void* data, wl_callback*, std::uint32_t) {
        auto& self = *static_cast<WaylandWindow*>(data);
        self.again_.reset();
        self.follow();
    }};

WaylandWindow::WaylandWindow(WaylandSystem& system, const NativeWindowOptions& options,
                             NativeWindowDelegate& delegate)
    : system_(system),
      connection_(system.connection()),
      options_(options),
      delegate_(delegate),
      number_(system.nextNumber()),
      takesKeyboard_(options.takesKeyboard),
      ring_(std::make_shared<BufferRing>()),
      buffers_(connection_.shm(), *ring_, [this] { updateReadiness(); }),
      place_(std::make_shared<EglPlace>(connection_.display())),
      painted_(ring_->file(), QSocketNotifier::Read),
      drawn_(place_->file(), QSocketNotifier::Read),
      late_(place_->lateFile(), QSocketNotifier::Read) {
    QObject::connect(&painted_, &QSocketNotifier::activated, [this] {
        ring_->acknowledge();
        showPainted();
    });
    QObject::connect(&drawn_, &QSocketNotifier::activated, [this] {
        place_->acknowledge();
        if (surface_) surface_->settle();
        updateReadiness();
        connection_.deliver();
    });
    QObject::connect(&late_, &QSocketNotifier::activated, [this] {
        place_->acknowledgeLate();
        connection_.deliver();
    });
    system_.added(*this);
}

WaylandWindow::~WaylandWindow() {
    endSurface();
    shown_ = false;
    system_.removed(*this);
}

bool WaylandWindow::fillsDisplay() const {
    return options_.window.style == WindowStyle::FullScreen || options_.window.level > 0;
}

bool WaylandWindow::isOverlay() const {
    return fillsDisplay() && connection_.layers();
}

const Output* WaylandWindow::output() const {
    if (const Output* const same = connection_.outputs().named(outputName_)) return same;
    return connection_.outputs().under(options_.window.frame);
}

QString WaylandWindow::outputName() const {
    const Output* const on = output();
    return on ? on->name() : QString();
}

QSize WaylandWindow::points() const {
    if (!configured_.isEmpty()) return configured_;
    const Output* const on = output();
    if (fillsDisplay() && on) return on->place().size();
    return options_.window.frame.size().toSize().expandedTo({1, 1});
}

double WaylandWindow::scale() const {
    const Output* const on = output();
    const double wanted = surface_ ? surface_->scale() : on ? on->scale() : 1.0;
    const QSizeF size(points());
    const double most = std::min({kLongest / size.width(), kLongest / size.height(),
                                  std::sqrt(kMostPixels / (size.width() * size.height()))});
    if (wanted <= most) return wanted;
    // A picture that is not stretched has a whole number of pixels per point.
    return surface_ && !surface_->isStretched() ? 1.0 : most;
}

QSize WaylandWindow::pixelSize() const {
    // A stretched picture of a whole display has exactly the display's pixels.
    const Output* const on = output();
    const bool fits = surface_ && surface_->isStretched() && on && points() == on->place().size() &&
                      scale() == on->scale();
    if (fits) return on->pixelSize();
    const QSizeF size = QSizeF(points()) * scale();
    const auto whole = [](double length) {
        return std::clamp(static_cast<int>(std::lround(length)), 1, kLongest);
    };
    return {whole(size.width()), whole(size.height())};
}

QRectF WaylandWindow::frame() const {
    const Output* const on = output();
    if (fillsDisplay() && on) return connection_.outputs().screenOf(*on).frame;
    return {options_.window.frame.topLeft(), size()};
}

void WaylandWindow::setFrame(const QRectF& frame) {
    options_.window.frame = frame;
    if (!fillsDisplay()) return;
    const Output* const on = connection_.outputs().under(frame);
    const QString name = on ? on->name() : QString();
    if (std::exchange(outputName_, name) == name || !surface_) return;
    // A surface belongs to one display for good.
    endSurface();
    follow();
}

std::optional<Screen> WaylandWindow::screen() const {
    const Output* const on = output();
    return on ? std::optional(connection_.outputs().screenOf(*on)) : std::nullopt;
}

void WaylandWindow::show() {
    if (std::exchange(shown_, true)) return;
    takenTimes_ = 0;
    const Output* const on = connection_.outputs().under(options_.window.frame);
    outputName_ = on ? on->name() : QString();
    system_.windowsChanged();
    follow();
}

void WaylandWindow::hide() {
    if (!std::exchange(shown_, false)) return;
    follow();
    system_.windowsChanged();
}

void WaylandWindow::setKeptDown(bool keptDown) {
    if (std::exchange(keptDown_, keptDown) != keptDown) follow();
}

void WaylandWindow::follow() {
    const bool isGone =
        fillsDisplay() && !outputName_.isEmpty() && !connection_.outputs().named(outputName_);
    const bool wanted = shown_ && !keptDown_ && !isGone && !again_ && takenTimes_ <= kMostTaken &&
                        connection_.isAlive() && (isOverlay() || connection_.windows());
    if (wanted == (surface_ != nullptr)) return;
    if (wanted) {
        makeSurface();
    } else {
        endSurface();
    }
    delegate_.visibilityChanged();
    updateReadiness();
}

void WaylandWindow::makeSurface() {
    const Output* const on = fillsDisplay() ? output() : nullptr;
    hidden_ = false;
    mayBeLocked_ = isOverlay() && connection_.hidesUnderLocks();
    surface_ = std::make_unique<ShellSurface>(
        connection_,
        ShellSurface::Options{.role = isOverlay()      ? ShellSurface::Role::Overlay
                                      : fillsDisplay() ? ShellSurface::Role::FullScreen
                                                       : ShellSurface::Role::Window,
                              .output = on,
                              .takesKeyboard = wantsKeyboard(),
                              .aboveAll = isSurelyUnlocked(),
                              .takesInput = !options_.ignoresMouse,
                              .title = options_.window.title},
        *this, *this);
    configured_ = {};
    hasExclusive_ = wantsKeyboard();
    hadChance_ = isSurelyUnlocked();
}

void WaylandWindow::endSurface() {
    if (!surface_) return;
    place_->close();
    surface_.reset();
    settling_.reset();
    if (std::exchange(resting_, false)) system_.restingChanged();
    // The compositor reads no buffer of an ended surface.
    ring_->endNames();
    ring_->reset();
    connection_.flush();
}

bool WaylandWindow::isSeen() const {
    return surface_ && surface_->isConfigured() && !resting_ && !hidden_;
}

void WaylandWindow::outputsChanged() {
    follow();
    updatePlace();
    delegate_.geometryChanged();
}

void WaylandWindow::setTitle(const QString& title) {
    options_.window.title = title;
    if (surface_) surface_->setTitle(title);
}

NativeWindow::SurfaceMaker WaylandWindow::surfaceMaker(const SurfaceOptions& options) {
    // The next way of drawing has the compositor's surface for itself.
    place_->close();
    if (surface_ && surface_->isConfigured()) place_->open(*surface_);
    return [options, ring = ring_, place = place_,
            shares = connection_.sharesGpu()](int ending) -> std::unique_ptr<Surface> {
        return surfaceFor(options, {.sharesGpu = [&] { return shares; },
                                    .openGl =
                                        [&] {
                                            return GlSurface::create(
                                                EglPlace::target(place, ending),
                                                options.resetStatus);
                                        },
                                    .cpu = [&] { return std::make_unique<ShmSurface>(ring); }});
    };
}

void WaylandWindow::updatePlace() {
    if (surface_) place_->setSize(pixelSize(), surface_->pictureOf(points()));
}

void WaylandWindow::surfaceConfigured(QSize size) {
    const bool first = configured_.isEmpty();
    const QSize before = points();
    const Output* const on = output();
    const QSize open = configured_.isEmpty() && fillsDisplay() && on ? on->place().size() : before;
    configured_ = {size.width() > 0 ? size.width() : open.width(),
                   size.height() > 0 ? size.height() : open.height()};
    updatePlace();
    if (first) place_->open(*surface_);
    delegate_.geometryChanged();
    if (!first) return;
    delegate_.visibilityChanged();
    // The new surface shows nothing yet, so the whole picture is lost.
    delegate_.exposed(QRect(QPoint(0, 0), pixelSize()));
}

void WaylandWindow::surfaceRescaled() {
    updatePlace();
    delegate_.geometryChanged();
}

void WaylandWindow::surfaceTaken() {
    ++takenTimes_;
    endSurface();
    delegate_.visibilityChanged();
    updateReadiness();
    if (again_) return;
    // A compositor closes the surface of a display that has gone. The reply comes after the
    // report of the display's end.
    again_.reset(wl_display_sync(connection_.display()));
    wl_callback_add_listener(again_.get(), &kAgain, this);
}

void WaylandWindow::closeAsked() {
    delegate_.closeAsked();
}

void WaylandWindow::showPainted() {
    if (!surface_ || !surface_->isConfigured() || surface_->isWaiting()) return;
    const auto [buffer, opaque] = ring_->take(pixelSize(), damage_);
    ring_->sweep();
    if (!buffer) return;
    joinDamage(damage_, boxes_);
    ShellSurface::Picture picture = surface_->pictureOf(points());
    picture.opaque = opaque;
    surface_->show(buffers_.name(*buffer, opaque), boxes_, picture);
    updateReadiness();
}

void WaylandWindow::updateReadiness() {
    const bool ready = !surface_ || (!surface_->isWaiting() && ring_->hasFree());
    if (std::exchange(ready_, ready) != ready) delegate_.readyForFrame(ready);
}

void WaylandWindow::frameDone() {
    // A compositor may name no display: a surface whose pictures are shown is under no lock.
    if (!hidden_ && std::exchange(mayBeLocked_, false)) focusChanged();
    // A surface that shows a picture has the keyboard by now, if it can have it.
    if (hasExclusive_ && !settling_ && !std::exchange(hadChance_, true)) focusChanged();
    if (!surface_) return;
    place_->answered();
    // A picture may have been painted while the compositor was busy with the previous one.
    showPainted();
    updateReadiness();
}

void WaylandWindow::presented(double time, double interval) {
    tellsPresentation_ = true;
    delegate_.presented(time, interval);
}

}  // namespace platform::wayland
