// SPDX-License-Identifier: MIT
#include "platform/desktop/GlSurface.h"

namespace platform {

std::unique_ptr<GlSurface> GlSurface::create(const QString& display, std::uint32_t window) {
    std::unique_ptr<GlSurface> surface(new GlSurface);
    surface->connection_ = std::make_unique<XConnection>(display);
    if (!surface->connection_->isAlive()) return nullptr;
    const auto egl =
        EglDisplay::forX11(surface->connection_->get(), surface->connection_->screenNumber());
    if (!egl) return nullptr;
    surface->window_ = EglWindowSurface::create(egl, window);
    if (!surface->window_) return nullptr;
    surface->context_ = GlContext::create(egl, surface->window_.get());
    if (!surface->context_ || !surface->context_->makeCurrent(*surface->window_)) return nullptr;
    surface->window_->setSwapInterval(1);
    surface->drawer_ = GlDrawer::create();
    return surface->drawer_ ? std::move(surface) : nullptr;
}

GlSurface::~GlSurface() {
    drawer_.reset();
    if (context_) context_->doneCurrent();
}

Surface::Result GlSurface::draw(const Frame& frame, std::span<const QRect>) {
    // A driver may learn of a new size only by swapping.
    for (int tries = 0; tries < 2; ++tries) {
        drawer_->draw(frame.passes.front().layers, frame.grid, frame.background);
        if (!window_->swap()) windowGone_ = true;
        if (windowGone_ || window_->size() == frame.grid.size) break;
    }
    return state();
}

Surface::Result GlSurface::repair(const Frame& frame, std::span<const QRect> lost) {
    return draw(frame, lost);
}

Surface::Result GlSurface::finish() {
    return state();
}

QString GlSurface::drawer() const {
    return QString::fromStdString(context_->rendererName());
}

Surface::Result GlSurface::state() {
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_->get())}) {
        if (event->response_type != 0) continue;
        const auto& error = reinterpret_cast<const xcb_generic_error_t&>(*event);
        windowGone_ = windowGone_ || tellsOfNoWindow(error);
    }
    if (!connection_->isAlive()) return Result::ServerGone;
    return windowGone_ ? Result::WindowGone : Result::Drawn;
}

}  // namespace platform
