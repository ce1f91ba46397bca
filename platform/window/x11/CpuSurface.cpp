// SPDX-License-Identifier: MIT
#include "platform/window/x11/CpuSurface.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <utility>

namespace platform {

namespace {
constexpr std::size_t kPutHeader = 32;
// The largest picture, a GiB of pixels, exceeds any screen. The rest of a larger window
// stays as it is.
constexpr QSize kLargest(16384, 16384);
}  // namespace

std::unique_ptr<CpuSurface> CpuSurface::create(const Options& options) {
    auto connection = std::make_unique<XConnection>(options.display);
    if (!connection->isAlive()) return nullptr;
    const auto look = lookAt(connection->get(), options.window);
    if (!look) return nullptr;
    auto format = pixelFormatFor(connection->get(), *look);
    if (!format) return nullptr;
    std::unique_ptr<CpuSurface> surface(
        new CpuSurface(options, std::move(connection), *look, std::move(*format)));
    // The picture's memory is there before the first frame, which the main thread still makes.
    surface->resize(QSize(look->width, look->height).boundedTo(kLargest));
    return surface;
}

CpuSurface::CpuSurface(const Options& options, std::unique_ptr<XConnection> connection,
                       const WindowLook& look, PixelFormat format)
    : options_(options),
      connection_(std::move(connection)),
      depth_(look.depth),
      format_(std::move(format)),
      context_(xcb_generate_id(connection_->get())) {
    xcb_connection_t* const c = connection_->get();
    const std::uint32_t none = 0;
    xcb_create_gc(c, context_, options.window, XCB_GC_GRAPHICS_EXPOSURES, &none);
    const std::size_t most = std::size_t{xcb_get_maximum_request_length(c)} * 4 - kPutHeader;
    // Requests stay small, so that other clients' requests fit between them.
    largestPut_ = std::min(most, std::size_t{1} << 20);
}

CpuSurface::~CpuSurface() = default;

void CpuSurface::resize(QSize size) {
    if (size_ == size) return;
    size_ = size;
    shared_.reset();
    completion_ = 0;
    const auto bytes = static_cast<std::size_t>(format_.bytesPerLine(size.width())) *
                       static_cast<std::size_t>(size.height());
    xcb_connection_t* const c = connection_->get();
    if (options_.sharedMemory) shared_ = ShmImage::create(c, bytes);
    if (shared_)
        completion_ = static_cast<std::uint8_t>(
            xcb_get_extension_data(c, &xcb_shm_id)->first_event + XCB_SHM_COMPLETION);
    const bool drawnInPlace = shared_ && format_.isNative();
    painter_.forget();
    picture_.assign(drawnInPlace ? 0 : static_cast<std::size_t>(size.width() * size.height()), 0);
}

Surface::Result CpuSurface::draw(const Frame& frame, std::span<const QRect> damage) {
    const Result settled = settle();
    if (settled != Result::Drawn) return settled;
    resize(frame.grid.size.boundedTo(kLargest));
    damage_.assign(damage.begin(), damage.end());
    for (QRect& rect : damage_)
        rect &= QRect(QPoint(0, 0), size_);
    std::erase_if(damage_, [](const QRect& rect) { return rect.isEmpty(); });
    if (damage_.empty()) return state();
    damage = damage_;
    std::uint32_t* const pixels = picture_.empty() && shared_
                                      ? reinterpret_cast<std::uint32_t*>(shared_->data())
                                      : picture_.data();
    painter_.paint(frame, damage, {.pixels = pixels, .stride = size_.width(), .size = size_});
    damage = painter_.changed(damage);
    if (damage.empty()) return state();
    if (shared_ && !format_.isNative())
        for (const QRect& rect : damage)
            format_.convert(picture_.data(), size_.width(), rect, shared_->data(), size_.width(),
                            rect.topLeft());
    show(damage);
    return state();
}

Surface::Result CpuSurface::repair(const Frame&, std::span<const QRect> lost) {
    const Result settled = settle();
    if (settled != Result::Drawn) return settled;
    show(lost);
    return state();
}

void CpuSurface::show(std::span<const QRect> rects) {
    const QRect whole(QPoint(0, 0), size_);
    xcb_connection_t* const c = connection_->get();
    for (std::size_t i = 0; i < rects.size(); ++i) {
        const QRect rect = rects[i] & whole;
        const bool last = i + 1 == rects.size();
        if (shared_) {
            putShared(rect, last);
        } else {
            putOverConnection(rect);
        }
    }
    if (!shared_) answer_ = xcb_get_input_focus(c).sequence;
    copying_ = true;
    xcb_flush(c);
}

void CpuSurface::putShared(const QRect& rect, bool last) {
    // The last image may be empty; it still brings the answer.
    xcb_shm_put_image(
        connection_->get(), options_.window, context_, static_cast<std::uint16_t>(size_.width()),
        static_cast<std::uint16_t>(size_.height()),
        static_cast<std::uint16_t>(std::max(rect.x(), 0)),
        static_cast<std::uint16_t>(std::max(rect.y(), 0)),
        static_cast<std::uint16_t>(std::max(rect.width(), 0)),
        static_cast<std::uint16_t>(std::max(rect.height(), 0)), static_cast<std::int16_t>(rect.x()),
        static_cast<std::int16_t>(rect.y()), static_cast<std::uint8_t>(depth_),
        XCB_IMAGE_FORMAT_Z_PIXMAP, last, shared_->segment(), 0);
}

void CpuSurface::putOverConnection(const QRect& rect) {
    // Splits by columns where not even one row fits.
    const int bits = format_.bitsPerPixel();
    const int widest = static_cast<int>(largestPut_ - 8) * 8 / bits;
    for (int x = rect.left(); x <= rect.right(); x += widest) {
        const int width = std::min(widest, rect.right() + 1 - x);
        const int line = format_.bytesPerLine(width);
        const int tallest = std::max(static_cast<int>(largestPut_) / line, 1);
        for (int y = rect.top(); y <= rect.bottom(); y += tallest)
            putBand({x, y, width, std::min(tallest, rect.bottom() + 1 - y)});
    }
}

void CpuSurface::putBand(const QRect& band) {
    const int line = format_.bytesPerLine(band.width());
    band_.resize(static_cast<std::size_t>(line) * static_cast<std::size_t>(band.height()));
    format_.convert(picture_.data(), size_.width(), band, band_.data(), band.width(), {0, 0});
    xcb_put_image(connection_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, options_.window, context_,
                  static_cast<std::uint16_t>(band.width()),
                  static_cast<std::uint16_t>(band.height()), static_cast<std::int16_t>(band.x()),
                  static_cast<std::int16_t>(band.y()), 0, static_cast<std::uint8_t>(depth_),
                  static_cast<std::uint32_t>(band_.size()), band_.data());
}

Surface::Result CpuSurface::state() const {
    if (!connection_->isAlive()) return Result::ServerGone;
    return windowGone_ ? Result::WindowGone : Result::Drawn;
}

Surface::Result CpuSurface::finish() {
    return settle();
}

void CpuSurface::take(const xcb_generic_event_t& event) {
    if (completion_ != 0 && typeOf(event) == completion_) copying_ = false;
    if (event.response_type != 0) return;
    // The server reads nothing for a refused request, and never answers it.
    copying_ = copying_ && !shared_;
    const auto& error = as<xcb_generic_error_t>(event);
    if (tellsOfNoWindow(error)) windowGone_ = true;
}

Surface::Result CpuSurface::settle() {
    xcb_connection_t* const c = connection_->get();
    for (;;) {
        while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(c)})
            take(*event);
        if (copying_ && !shared_) {
            void* reply = nullptr;
            xcb_generic_error_t* error = nullptr;
            if (xcb_poll_for_reply(c, answer_, &reply, &error) != 0) copying_ = false;
            std::free(reply);
            std::free(error);
        }
        if (!copying_ || windowGone_ || !connection_->isAlive()) return state();
        pollfd waits[2] = {{.fd = xcb_get_file_descriptor(c), .events = POLLIN, .revents = 0},
                           {.fd = options_.ending, .events = POLLIN, .revents = 0}};
        poll(waits, 2, -1);
        // The render thread finds the reason for the end by itself.
        if (waits[1].revents != 0) return state();
    }
}

}  // namespace platform
