// SPDX-License-Identifier: MIT
#pragma once

#include <QSocketNotifier>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>

#include "platform/window/wayland/Outputs.h"
#include "platform/window/wayland/Protocols.h"
#include "platform/window/wayland/Seat.h"
#include "platform/window/wayland/Toplevels.h"

namespace platform::wayland {

// A compositor that is silent for this long counts as absent.
constexpr std::chrono::milliseconds kPatience{5000};

// Waits, seconds at most, until the compositor has answered everything sent; false if it has
// not. Events that arrive meanwhile are delivered. Main thread.
[[nodiscard]] bool answers(wl_display& display);

// The program's connection to a Wayland compositor, and the compositor's interfaces. Reads on
// the Qt event loop of the thread that made the connection, and sends before that loop waits.
// A driver of OpenGL uses the connection on render threads, and may read events for the main
// thread there; see deliver(). Owned by the window system; outlives the
// windows. Main thread.
class Connection {
  public:
    // Connects to the environment's compositor where `address` is empty. Waits for the
    // compositor's first answers, seconds at most; isAlive() tells the result. The clock
    // outlives the connection.
    Connection(MediaClock& clock, const QString& address);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Whether there is a compositor that can show windows.
    [[nodiscard]] bool isAlive() const { return alive_; }
    // The compositor's reason for the loss of the connection; empty where the compositor just
    // went away.
    [[nodiscard]] const QString& protocolError() const { return protocolError_; }
    // Calls the action once the compositor is gone, in a turn of the event loop.
    void onLost(std::function<void()> action) { lost_ = std::move(action); }
    // Reports that another part found the compositor gone.
    void lost();

    [[nodiscard]] wl_display* display() const { return display_.get(); }
    [[nodiscard]] Outputs& outputs() { return outputs_; }
    [[nodiscard]] const Outputs& outputs() const { return outputs_; }
    [[nodiscard]] Seat& seat() { return seat_; }
    [[nodiscard]] const Seat& seat() const { return seat_; }

    // Whether lockers show overlays as any program does, so that one of ours could lie over
    // a lock: there is a protocol to take the input, and none to lock.
    [[nodiscard]] bool locksAreOverlays() const { return inputTaking_ && !sessionLocks_; }
    // Whether a lock hides every other surface, which then leaves its display.
    [[nodiscard]] bool hidesUnderLocks() const { return sessionLocks_; }
    // Followed where locksAreOverlays().
    [[nodiscard]] Toplevels& toplevels() { return toplevels_; }

    // The interfaces, each null where the compositor does not offer it. The first two exist
    // while the connection is alive.
    [[nodiscard]] wl_compositor* compositor() const { return compositor_.get(); }
    [[nodiscard]] wl_shm* shm() const { return shm_.get(); }
    [[nodiscard]] xdg_wm_base* windows() const { return windows_.get(); }
    [[nodiscard]] zwlr_layer_shell_v1* layers() const { return layers_.get(); }
    [[nodiscard]] wp_viewporter* viewporter() const { return viewporter_.get(); }
    [[nodiscard]] wp_fractional_scale_manager_v1* fractions() const { return fractions_.get(); }
    // Null, too, where the compositor's times are those of another clock than the media
    // clock's.
    [[nodiscard]] wp_presentation* presentation() const { return presentation_.get(); }
    [[nodiscard]] zxdg_decoration_manager_v1* decorations() const { return decorations_.get(); }
    [[nodiscard]] ext_idle_notifier_v1* idleNotifier() const { return idleNotifier_.get(); }
    [[nodiscard]] org_kde_kwin_idle* kdeIdle() const { return kdeIdle_.get(); }

    // Whether the compositor shares a GPU with programs.
    [[nodiscard]] bool sharesGpu() const { return sharesGpu_; }

    // Sends the requests made so far.
    void flush();
    // Delivers the events that another thread has read.
    void deliver();
    // Waits for the compositor's answers; see answers().
    bool roundTrip() { return alive_ && answers(*display()); }

  private:
    struct Disconnect {
        void operator()(wl_display* display) const { wl_display_disconnect(display); }
    };
    static const wl_registry_listener kRegistry;
    static const xdg_wm_base_listener kPings;
    static const wp_presentation_listener kPresentation;
    void found(std::uint32_t name, std::string_view interface, std::uint32_t version);
    void gone(std::uint32_t name);
    void followToplevels();
    void read();

    std::unique_ptr<wl_display, Disconnect> display_;
    bool alive_ = false;
    bool told_ = false;
    QString protocolError_;
    std::function<void()> lost_;
    Proxy<wl_registry> registry_;
    Proxy<wl_compositor> compositor_;
    Proxy<wl_shm> shm_;
    Proxy<xdg_wm_base> windows_;
    Proxy<zwlr_layer_shell_v1> layers_;
    Proxy<wp_viewporter> viewporter_;
    Proxy<wp_fractional_scale_manager_v1> fractions_;
    Proxy<wp_presentation> presentation_;
    Proxy<zxdg_decoration_manager_v1> decorations_;
    Proxy<ext_idle_notifier_v1> idleNotifier_;
    Proxy<org_kde_kwin_idle> kdeIdle_;
    bool inputTaking_ = false, sessionLocks_ = false, sharesGpu_ = false;
    std::uint32_t toplevelManager_ = 0;  // its name; 0 without
    Toplevels toplevels_;
    Outputs outputs_;
    Seat seat_;
    std::unique_ptr<QSocketNotifier> readable_, writable_;
    QMetaObject::Connection sending_;
};

}  // namespace platform::wayland
