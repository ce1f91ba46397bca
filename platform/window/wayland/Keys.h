// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/view/Events.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace platform::wayland {

// The meaning of a keyboard's keys, by the compositor's keymap. The seat owns it. Main
// thread.
class Keys {
  public:
    Keys();
    ~Keys();
    Keys(const Keys&) = delete;
    Keys& operator=(const Keys&) = delete;

    // Takes a keymap from a file of that many bytes, and closes the file. A
    // keymap that cannot be read leaves the keys without meaning.
    void setKeymap(int file, std::uint32_t size);
    void setModifiers(std::uint32_t depressed, std::uint32_t latched, std::uint32_t locked,
                      std::uint32_t group);

    // The event of a press of the key with that number in the protocol.
    [[nodiscard]] KeyEvent press(std::uint32_t key, bool isRepeat) const;
    [[nodiscard]] bool repeats(std::uint32_t key) const;

  private:
    struct Unref {
        void operator()(xkb_context* p) const;
        void operator()(xkb_keymap* p) const;
        void operator()(xkb_state* p) const;
    };
    [[nodiscard]] std::uint32_t modifiers() const;

    const std::unique_ptr<xkb_context, Unref> context_;
    std::unique_ptr<xkb_keymap, Unref> keymap_;
    std::unique_ptr<xkb_state, Unref> state_;
};

// The Qt::Key of a key symbol; Qt::Key_unknown for a symbol without one. Any thread.
[[nodiscard]] int qtKey(std::uint32_t keySymbol);

}  // namespace platform::wayland
