// SPDX-License-Identifier: MIT
#pragma once

#include <linux/input-event-codes.h>

#include <QPoint>
#include <QSize>

#include "tests/support/wayland/InputDevice.h"
#include "virtual-pointer-client.h"

namespace wltest {

// A mouse that a test moves. Every call waits until the compositor has had it.
class VirtualPointer : private InputDevice<zwlr_virtual_pointer_manager_v1> {
  public:
    explicit VirtualPointer(const QString& address)
        : InputDevice(address, zwlr_virtual_pointer_manager_v1_interface) {
        if (!manager()) return;
        pointer_ = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(manager(), nullptr);
        wait();
    }
    ~VirtualPointer() {
        if (pointer_) zwlr_virtual_pointer_v1_destroy(pointer_);
        if (manager()) zwlr_virtual_pointer_manager_v1_destroy(manager());
    }

    [[nodiscard]] bool isThere() const { return pointer_ != nullptr; }

    // In points of all displays together, of that size.
    void moveTo(QPoint at, QSize extent) {
        zwlr_virtual_pointer_v1_motion_absolute(
            pointer_, nextTime(), static_cast<std::uint32_t>(at.x()),
            static_cast<std::uint32_t>(at.y()), static_cast<std::uint32_t>(extent.width()),
            static_cast<std::uint32_t>(extent.height()));
        zwlr_virtual_pointer_v1_frame(pointer_);
        wait();
    }
    void click() {
        for (const std::uint32_t state :
             {WL_POINTER_BUTTON_STATE_PRESSED, WL_POINTER_BUTTON_STATE_RELEASED}) {
            zwlr_virtual_pointer_v1_button(pointer_, nextTime(), BTN_LEFT, state);
            zwlr_virtual_pointer_v1_frame(pointer_);
        }
        wait();
    }

  private:
    zwlr_virtual_pointer_v1* pointer_ = nullptr;
};

}  // namespace wltest
