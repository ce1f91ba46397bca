// SPDX-License-Identifier: MIT
#pragma once

#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xkbcommon/xkbcommon.h>

#include <QString>
#include <cstdlib>
#include <cstring>
#include <string_view>

#include "virtual-keyboard-client.h"

namespace wltest {

// A keyboard that a test presses, on a real compositor that lets clients have one. It is
// there as long as the object, as a real one is. Every call waits until the compositor has
// had it.
class VirtualKeyboard {
  public:
    explicit VirtualKeyboard(const QString& address)
        : display_(wl_display_connect(qPrintable(address))) {
        if (!display_) return;
        static constexpr wl_registry_listener kListener = {
            .global =
                [](void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                   std::uint32_t) {
                    static_cast<VirtualKeyboard*>(data)->found(registry, name, interface);
                },
            .global_remove = [](void*, wl_registry*, std::uint32_t) {},
        };
        registry_ = wl_display_get_registry(display_);
        wl_registry_add_listener(registry_, &kListener, this);
        wl_display_roundtrip(display_);
        if (!manager_ || !seat_) return;
        keyboard_ = zwp_virtual_keyboard_manager_v1_create_virtual_keyboard(manager_, seat_);
        sendKeymap();
        wl_display_roundtrip(display_);
    }
    ~VirtualKeyboard() {
        if (keyboard_) zwp_virtual_keyboard_v1_destroy(keyboard_);
        if (manager_) zwp_virtual_keyboard_manager_v1_destroy(manager_);
        if (seat_) wl_seat_destroy(seat_);
        if (registry_) wl_registry_destroy(registry_);
        if (display_) wl_display_disconnect(display_);
    }
    VirtualKeyboard(const VirtualKeyboard&) = delete;
    VirtualKeyboard& operator=(const VirtualKeyboard&) = delete;

    [[nodiscard]] bool isThere() const { return keyboard_ != nullptr; }

    // Presses and releases a key, as in linux/input-event-codes.h.
    void type(std::uint32_t code) {
        for (const std::uint32_t state :
             {WL_KEYBOARD_KEY_STATE_PRESSED, WL_KEYBOARD_KEY_STATE_RELEASED})
            zwp_virtual_keyboard_v1_key(keyboard_, ++time_, code, state);
        wl_display_roundtrip(display_);
    }

  private:
    void found(wl_registry* registry, std::uint32_t name, std::string_view interface) {
        if (interface == zwp_virtual_keyboard_manager_v1_interface.name)
            manager_ = static_cast<zwp_virtual_keyboard_manager_v1*>(
                wl_registry_bind(registry, name, &zwp_virtual_keyboard_manager_v1_interface, 1));
        if (interface == wl_seat_interface.name)
            seat_ = static_cast<wl_seat*>(wl_registry_bind(registry, name, &wl_seat_interface, 1));
    }

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
        wl_display_flush(display_);
        close(file);
        std::free(text);
        xkb_keymap_unref(keymap);
        xkb_context_unref(context);
    }

    wl_display* const display_;
    wl_registry* registry_ = nullptr;
    wl_seat* seat_ = nullptr;
    zwp_virtual_keyboard_manager_v1* manager_ = nullptr;
    zwp_virtual_keyboard_v1* keyboard_ = nullptr;
    std::uint32_t time_ = 0;
};

}  // namespace wltest
