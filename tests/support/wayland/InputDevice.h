// SPDX-License-Identifier: MIT
#pragma once

#include <wayland-client.h>

#include <QString>
#include <string_view>

namespace wltest {

// An input device that a test works, on a connection of its own to a real compositor that
// lets clients have one. `Manager` is the protocol's maker of such devices. The device is
// there as long as the object, as a real one is.
template <typename Manager>
class InputDevice {
  public:
    InputDevice(const InputDevice&) = delete;
    InputDevice& operator=(const InputDevice&) = delete;

  protected:
    InputDevice(const QString& address, const wl_interface& wanted)
        : display_(wl_display_connect(qPrintable(address))), wanted_(wanted) {
        if (!display_) return;
        static constexpr wl_registry_listener kListener = {
            .global =
                [](void* data, wl_registry*, std::uint32_t name, const char* interface,
                   std::uint32_t) { static_cast<InputDevice*>(data)->found(name, interface); },
            .global_remove = [](void*, wl_registry*, std::uint32_t) {},
        };
        registry_ = wl_display_get_registry(display_);
        wl_registry_add_listener(registry_, &kListener, this);
        wait();
    }
    // The device and its manager have ended by then.
    ~InputDevice() {
        if (seat_) wl_seat_destroy(seat_);
        if (registry_) wl_registry_destroy(registry_);
        if (display_) wl_display_disconnect(display_);
    }

    // Null where the compositor has none.
    [[nodiscard]] Manager* manager() const { return manager_; }
    [[nodiscard]] wl_seat* seat() const { return seat_; }
    // Waits until the compositor has had everything.
    void wait() { wl_display_roundtrip(display_); }
    void flush() { wl_display_flush(display_); }
    // Milliseconds, later than before.
    [[nodiscard]] std::uint32_t nextTime() { return ++time_; }

  private:
    void found(std::uint32_t name, std::string_view interface) {
        if (interface == wanted_.name)
            manager_ = static_cast<Manager*>(wl_registry_bind(registry_, name, &wanted_, 1));
        if (interface == wl_seat_interface.name)
            seat_ = static_cast<wl_seat*>(wl_registry_bind(registry_, name, &wl_seat_interface, 1));
    }

    wl_display* const display_;
    const wl_interface& wanted_;
    wl_registry* registry_ = nullptr;
    wl_seat* seat_ = nullptr;
    Manager* manager_ = nullptr;
    std::uint32_t time_ = 0;
};

}  // namespace wltest
