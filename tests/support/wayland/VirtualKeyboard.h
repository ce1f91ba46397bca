// SPDX-License-Identifier: MIT
#pragma once

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <cstdlib>
#include <cstring>

#include "tests/support/wayland/InputDevice.h"
#include "virtual-keyboard-client.h"

namespace wltest {

// A keyboard that a test presses. Every call waits until the compositor has had it.
class VirtualKeyboard : private InputDevice<zwp_virtual_keyboard_manager_v1> {
  public:
    explicit VirtualKeyboard(const QString& address)
        : InputDevice(address, zwp_virtual_keyboard_manager_v1_interface) {
        if (!manager() || !seat()) return;
        keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager(), seat());
        sendKeymap();
        wait();
    }
    ~VirtualKeyboard() {
        if (keyboard_) zwp_virtual_keyboard_v1_destroy(keyboard_);
        if (manager()) zwp_virtual_keyboard_manager_v1_destroy(manager());
    }

    [[nodiscard]] bool isThere() const { return keyboard_ != nullptr; }

    // Presses and releases a key, as in linux/input-event-codes.h.
    void type(std::uint32_t code) {
        for (const std::uint32_t state :
             {WL_KEYBOARD_KEY_STATE_PRESSED, WL_KEYBOARD_KEY_STATE_RELEASED})
            zwp_virtual_keyboard_v1_key(keyboard_, nextTime(), code, state);
        wait();
    }

  private:
    void sendKeymap() {
        xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
        const xkb_rule_names names{.rules = "evdev",
                                   .model = "pc105",
                                   .layout = "us",
                                   .variant = nullptr,
                                   .options = nullptr};
        xkb_keymap* const keymap =
            xkb_keymap_new_from_names(context, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
        char* const text = xkb_keymap_get_as_string(keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
        const std::size_t size = std::strlen(text) + 1;
        const int file = memfd_create("keymap", MFD_CLOEXEC);
        if (write(file, text, size) != static_cast<ssize_t>(size)) qFatal("no keymap");
        zwp_virtual_keyboard_v1_keymap(keyboard_, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                       static_cast<std::uint32_t>(size));
        flush();
        close(file);
        std::free(text);
        xkb_keymap_unref(keymap);
        xkb_context_unref(context);
    }

    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
};

}  // namespace wltest
