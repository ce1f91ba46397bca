// SPDX-License-Identifier: MIT
#pragma once

#include <linux/input-event-codes.h>
#include <wayland-client.h>

#include <QPoint>
#include <QSize>
#include <QString>
#include <string_view>

#include "virtual-pointer-client.h"

namespace wltest {

// A mouse that a test moves, on a real compositor that lets clients have one. Every
// call waits until the compositor has had it.
class VirtualPointer {
  public:
    explicit VirtualPointer(const QString& address)
        : display_(wl_display_connect(qPrintable(address))) {
        if (!display_) return;
        static constexpr wl_registry_listener kListener = {
            .global =
                [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                   std::uint32_t) {
                    if (std::string_view(interface) !=
                        zwlr_virtual_pointer_manager_v1_interface.name)
                        return;
                    static_cast<VirtualPointer*>(data)->manager_ =
                        static_cast<zwlr_virtual_pointer_manager_v1*>(wl_registry_bind(
                            registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
                },
            .global_remove = [](void*, wl_registry*, std::uint32_t) {},
        };
        registry_ = wl_display_get_registry(display_);
        wl_registry_add_listener(registry_, &kListener, this);
        wl_display_roundtrip(display_);
        if (!manager_) return;
        pointer_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager_, nullptr);
        wl_display_roundtrip(display_);
    }
    ~VirtualPointer() {
        if (pointer_) zwlr_virtual_pointer_v1_destroy(pointer_);
        if (manager_) zwlr_virtual_pointer_manager_v1_destroy(manager_);
        if (registry_) wl_registry_destroy(registry_);
        if (display_) wl_display_disconnect(display_);
    }
    VirtualPointer(const VirtualPointer&) = delete;
    VirtualPointer& operator=(const VirtualPointer&) = delete;

    [[nodiscard]] bool isThere() const { return pointer_ != nullptr; }

    // In points of all displays together, of that size.
    void moveTo(QPoint at, QSize extent) {
        zwlr_virtual_pointer_v1_motion_absolute(
            pointer_, ++time_, static_cast<std::uint32_t>(at.x()),
            static_cast<std::uint32_t>(at.y()), static_cast<std::uint32_t>(extent.width()),
            static_cast<std::uint32_t>(extent.height()));
        zwlr_virtual_pointer_v1_frame(pointer_);
        wl_display_roundtrip(display_);
    }
    void click() {
        for (const std::uint32_t state :
             {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
            zwlr_virtual_pointer_v1_button(pointer_, ++time_, BTN_LEFT, state);
            zwlr_virtual_pointer_v1_frame(pointer_);
        }
        wl_display_roundtrip(display_);
    }

  private:
    wl_display* const display_;
    wl_registry* registry_ = nullptr;
    zwlr_virtual_pointer_manager_v1* manager_ = nullptr;
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
    std::uint32_t time_ = 0;
};

}  // namespace wltest
