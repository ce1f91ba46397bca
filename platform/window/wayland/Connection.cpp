// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Connection.h"

#include <poll.h>
#include <time.h>

#include <QAbstractEventDispatcher>
#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <utility>

namespace platform::wayland {

namespace {

// Protocols of lockers, of which only the presence counts.
constexpr std::string_view kInputTaking = "zwlr_input_inhibit_manager_v1";
constexpr std::string_view kSessionLocks = "ext_session_lock_manager_v1";
// Protocols by which drivers share pictures on a GPU, likewise: Mesa's and all drivers' later
// one, and NVIDIA's earlier one.
constexpr std::array<std::string_view, 3> kGpuSharing{"wl_drm", "zwp_linux_dmabuf_v1",
                                                      "wl_eglstream_display"};

// Suppresses the library's own messages; the action of onLost() reports a loss.
void keepQuiet(const char*, va_list) {}

template <typename T>
Proxy<T> bind(wl_registry* registry, std::uint32_t name, const wl_interface& interface,
              std::uint32_t offered, std::uint32_t known) {
    return Proxy<T>(
        static_cast<T*>(wl_registry_bind(registry, name, &interface, std::min(offered, known))));
}

}  // namespace

bool answers(wl_display& display) {
    bool answered = false;
    const wl_callback_listener answer = {
        .done = [](void* data, wl_callback*, std::uint32_t) { *static_cast<bool*>(data) = true; }};
    const Proxy<wl_callback> question(wl_display_sync(&display));
    wl_callback_add_listener(question.get(), &answer, &answered);
    while (!answered) {
        while (wl_display_prepare_read(&display) != 0)
            if (wl_display_dispatch_pending(&display) < 0) return false;
        wl_display_flush(&display);
        pollfd waits{.fd = wl_display_get_fd(&display), .events = POLLIN, .revents = 0};
        if (poll(&waits, 1, static_cast<int>(kPatience.count())) <= 0) {
            wl_display_cancel_read(&display);
            return false;
        }
        if (wl_display_read_events(&display) < 0 || wl_display_dispatch_pending(&display) < 0)
            return false;
    }
    return true;
}

const wl_registry_listener Connection::kRegistry = {
    .global =
        [](void* data, wl_registry*, std::uint32_t name, const char* interface,
           std::uint32_t version) {
            static_cast<Connection*>(data)->found(name, interface, version);
        },
    .global_remove = [](void* data, wl_registry*,
                        std::uint32_t name) { static_cast<Connection*>(data)->gone(name); },
};

const wp_presentation_listener Connection::kPresentation = {
    .clock_id = [](void* data, wp_presentation*, std::uint32_t clock) {
        if (clock != CLOCK_MONOTONIC) static_cast<Connection*>(data)->presentation_.reset();
    }};

const xdg_wm_base_listener Connection::kPings = {
    .ping = [](void*, xdg_wm_base* base, std::uint32_t serial) { xdg_wm_base_pong(base, serial); }};

Connection::Connection(MediaClock& clock, const QString& address) : seat_(clock) {
    wl_log_set_handler_client(keepQuiet);
    const QByteArray name = address.toLocal8Bit();
    display_.reset(wl_display_connect(name.isEmpty() ? nullptr : name.constData()));
    if (!display_) return;
    registry_.reset(wl_display_get_registry(display()));
    wl_registry_add_listener(registry_.get(), &kRegistry, this);
    alive_ = true;
    // The first round trip brings the globals, the second their properties.
    alive_ = roundTrip() && compositor_ && shm_;
    if (alive_) followToplevels();
    alive_ = alive_ && roundTrip();
    if (!alive_) return;
    seat_.setCursorSource(compositor_.get(), shm_.get());
    const int file = wl_display_get_fd(display());
    readable_ = std::make_unique<QSocketNotifier>(file, QSocketNotifier::Read);
    QObject::connect(readable_.get(), &QSocketNotifier::activated, [this] { read(); });
    writable_ = std::make_unique<QSocketNotifier>(file, QSocketNotifier::Write);
    writable_->setEnabled(false);
    QObject::connect(writable_.get(), &QSocketNotifier::activated, [this] { flush(); });
    if (const auto* const loop = QAbstractEventDispatcher::instance())
        sending_ =
            QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, [this] { flush(); });
}

Connection::~Connection() {
    QObject::disconnect(sending_);
}

void Connection::found(std::uint32_t name, std::string_view interface, std::uint32_t version) {
    wl_registry* const r = registry_.get();
    if (interface == wl_compositor_interface.name && version >= 4) {
        compositor_ = bind<wl_compositor>(r, name, wl_compositor_interface, version, 5);
    } else if (interface == wl_shm_interface.name) {
        shm_ = bind<wl_shm>(r, name, wl_shm_interface, version, 1);
    } else if (interface == wl_output_interface.name) {
        outputs_.add(bind<wl_output>(r, name, wl_output_interface, version, 4), name);
    } else if (interface == zxdg_output_manager_v1_interface.name) {
        outputs_.setManager(
            bind<zxdg_output_manager_v1>(r, name, zxdg_output_manager_v1_interface, version, 3));
    } else if (interface == wl_seat_interface.name) {
        seat_.bind(bind<wl_seat>(r, name, wl_seat_interface, version, 7), name);
    } else if (interface == xdg_wm_base_interface.name) {
        windows_ = bind<xdg_wm_base>(r, name, xdg_wm_base_interface, version, 3);
        xdg_wm_base_add_listener(windows_.get(), &kPings, nullptr);
    } else if (interface == zwlr_layer_shell_v1_interface.name) {
        layers_ = bind<zwlr_layer_shell_v1>(r, name, zwlr_layer_shell_v1_interface, version, 4);
    } else if (interface == wp_viewporter_interface.name) {
        viewporter_ = bind<wp_viewporter>(r, name, wp_viewporter_interface, version, 1);
    } else if (interface == wp_fractional_scale_manager_v1_interface.name) {
        fractions_ = bind<wp_fractional_scale_manager_v1>(
            r, name, wp_fractional_scale_manager_v1_interface, version, 1);
    } else if (interface == wp_presentation_interface.name) {
        presentation_ = bind<wp_presentation>(r, name, wp_presentation_interface, version, 1);
        wp_presentation_add_listener(presentation_.get(), &kPresentation, this);
    } else if (interface == zxdg_decoration_manager_v1_interface.name) {
        decorations_ = bind<zxdg_decoration_manager_v1>(
            r, name, zxdg_decoration_manager_v1_interface, version, 1);
    } else if (interface == ext_idle_notifier_v1_interface.name) {
        idleNotifier_ =
            bind<ext_idle_notifier_v1>(r, name, ext_idle_notifier_v1_interface, version, 1);
    } else if (interface == org_kde_kwin_idle_interface.name) {
        kdeIdle_ = bind<org_kde_kwin_idle>(r, name, org_kde_kwin_idle_interface, version, 1);
    } else if (interface == kInputTaking) {
        inputTaking_ = true;
    } else if (interface == kSessionLocks) {
        sessionLocks_ = true;
    } else if (std::find(kGpuSharing.begin(), kGpuSharing.end(), interface) != kGpuSharing.end()) {
        sharesGpu_ = true;
    } else if (interface == zwlr_foreign_toplevel_manager_v1_interface.name) {
        toplevelManager_ = name;
    }
}

void Connection::followToplevels() {
    if (!locksAreOverlays() || toplevelManager_ == 0) return;
    toplevels_.bind(bind<zwlr_foreign_toplevel_manager_v1>(
        registry_.get(), toplevelManager_, zwlr_foreign_toplevel_manager_v1_interface, 1, 1));
}

void Connection::gone(std::uint32_t name) {
    outputs_.remove(name);
    seat_.remove(name);
}

void Connection::read() {
    while (wl_display_prepare_read(display()) != 0)
        if (wl_display_dispatch_pending(display()) < 0) return lost();
    // A driver may have read meanwhile. Reading then would wait for the compositor.
    pollfd socket{.fd = wl_display_get_fd(display()), .events = POLLIN, .revents = 0};
    if (poll(&socket, 1, 0) != 1) {
        wl_display_cancel_read(display());
    } else if (wl_display_read_events(display()) < 0) {
        return lost();
    }
    deliver();
    flush();
}

void Connection::deliver() {
    if (alive_ && wl_display_dispatch_pending(display()) < 0) lost();
}

void Connection::flush() {
    if (!alive_) return;
    const bool full = wl_display_flush(display()) < 0 && errno == EAGAIN;
    if (writable_ && writable_->isEnabled() != full) writable_->setEnabled(full);
}

void Connection::lost() {
    alive_ = false;
    if (readable_) readable_->setEnabled(false);
    if (writable_) writable_->setEnabled(false);
    if (std::exchange(told_, true)) return;
    if (wl_display_get_error(display()) == EPROTO) {
        const wl_interface* interface = nullptr;
        std::uint32_t id = 0;
        const std::uint32_t code = wl_display_get_protocol_error(display(), &interface, &id);
        protocolError_ = QStringLiteral("%1, %2")
                             .arg(QLatin1String(interface ? interface->name : "wl_display"))
                             .arg(code);
    }
    if (const auto action = std::exchange(lost_, nullptr)) action();
}

}  // namespace platform::wayland
