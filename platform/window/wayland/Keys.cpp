// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Keys.h"

#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <QChar>
#include <algorithm>
#include <array>
#include <string_view>

namespace platform::wayland {

namespace {

// The protocol's key numbers begin lower than a keymap's.
constexpr std::uint32_t kOffset = 8;

struct Known {
    std::uint32_t symbol;
    int key;
};

constexpr std::array kKnown{
    Known{XKB_KEY_Escape, Qt::Key_Escape},
    Known{XKB_KEY_Tab, Qt::Key_Tab},
    Known{XKB_KEY_ISO_Left_Tab, Qt::Key_Backtab},
    Known{XKB_KEY_BackSpace, Qt::Key_Backspace},
    Known{XKB_KEY_Return, Qt::Key_Return},
    Known{XKB_KEY_KP_Enter, Qt::Key_Enter},
    Known{XKB_KEY_Insert, Qt::Key_Insert},
    Known{XKB_KEY_Delete, Qt::Key_Delete},
    Known{XKB_KEY_Pause, Qt::Key_Pause},
    Known{XKB_KEY_Print, Qt::Key_Print},
    Known{XKB_KEY_Home, Qt::Key_Home},
    Known{XKB_KEY_End, Qt::Key_End},
    Known{XKB_KEY_Left, Qt::Key_Left},
    Known{XKB_KEY_Up, Qt::Key_Up},
    Known{XKB_KEY_Right, Qt::Key_Right},
    Known{XKB_KEY_Down, Qt::Key_Down},
    Known{XKB_KEY_Prior, Qt::Key_PageUp},
    Known{XKB_KEY_Next, Qt::Key_PageDown},
    Known{XKB_KEY_KP_Home, Qt::Key_Home},
    Known{XKB_KEY_KP_End, Qt::Key_End},
    Known{XKB_KEY_KP_Left, Qt::Key_Left},
    Known{XKB_KEY_KP_Up, Qt::Key_Up},
    Known{XKB_KEY_KP_Right, Qt::Key_Right},
    Known{XKB_KEY_KP_Down, Qt::Key_Down},
    Known{XKB_KEY_KP_Prior, Qt::Key_PageUp},
    Known{XKB_KEY_KP_Next, Qt::Key_PageDown},
    Known{XKB_KEY_KP_Insert, Qt::Key_Insert},
    Known{XKB_KEY_KP_Delete, Qt::Key_Delete},
    Known{XKB_KEY_Shift_L, Qt::Key_Shift},
    Known{XKB_KEY_Shift_R, Qt::Key_Shift},
    Known{XKB_KEY_Control_L, Qt::Key_Control},
    Known{XKB_KEY_Control_R, Qt::Key_Control},
    Known{XKB_KEY_Alt_L, Qt::Key_Alt},
    Known{XKB_KEY_Alt_R, Qt::Key_Alt},
    Known{XKB_KEY_Meta_L, Qt::Key_Meta},
    Known{XKB_KEY_Meta_R, Qt::Key_Meta},
    Known{XKB_KEY_Super_L, Qt::Key_Super_L},
    Known{XKB_KEY_Super_R, Qt::Key_Super_R},
    Known{XKB_KEY_ISO_Level3_Shift, Qt::Key_AltGr},
    Known{XKB_KEY_Caps_Lock, Qt::Key_CapsLock},
    Known{XKB_KEY_Num_Lock, Qt::Key_NumLock},
    Known{XKB_KEY_Scroll_Lock, Qt::Key_ScrollLock},
    Known{XKB_KEY_Menu, Qt::Key_Menu},
};

int unprintable(std::uint32_t symbol) {
    if (symbol >= XKB_KEY_F1 && symbol <= XKB_KEY_F35)
        return Qt::Key_F1 + static_cast<int>(symbol - XKB_KEY_F1);
    const auto* const found = std::find_if(
        kKnown.begin(), kKnown.end(), [=](const Known& known) { return known.symbol == symbol; });
    return found == kKnown.end() ? 0 : found->key;
}

}  // namespace

int qtKey(std::uint32_t keySymbol) {
    if (const int key = unprintable(keySymbol)) return key;
    const std::uint32_t character = xkb_keysym_to_utf32(keySymbol);
    if (character < 0x20) return Qt::Key_unknown;
    return static_cast<int>(QChar::toUpper(char32_t{character}));
}

void Keys::Unref::operator()(xkb_context* p) const {
    xkb_context_unref(p);
}
void Keys::Unref::operator()(xkb_keymap* p) const {
    xkb_keymap_unref(p);
}
void Keys::Unref::operator()(xkb_state* p) const {
    xkb_state_unref(p);
}

Keys::Keys() : context_(xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES)) {
    // The library's messages about a compositor's keymap are suppressed.
    if (context_) xkb_context_set_log_level(context_.get(), XKB_LOG_LEVEL_CRITICAL);
}

Keys::~Keys() = default;

void Keys::setKeymap(int file, std::uint32_t size) {
    state_.reset();
    keymap_.reset();
    void* const text =
        size == 0 ? MAP_FAILED : mmap(nullptr, size, PROT_READ, MAP_PRIVATE, file, 0);
    close(file);
    if (text == MAP_FAILED) return;
    // The size may or may not include the final zero byte.
    const std::string_view whole(static_cast<const char*>(text), size);
    const std::string_view used = whole.substr(0, whole.find('\0'));
    if (context_)
        keymap_.reset(xkb_keymap_new_from_buffer(context_.get(), used.data(), used.size(),
                                                 XKB_KEYMAP_FORMAT_TEXT_V1,
                                                 XKB_KEYMAP_COMPILE_NO_FLAGS));
    munmap(text, size);
    if (keymap_) state_.reset(xkb_state_new(keymap_.get()));
}

void Keys::setModifiers(std::uint32_t depressed, std::uint32_t latched, std::uint32_t locked,
                        std::uint32_t group) {
    if (state_) xkb_state_update_mask(state_.get(), depressed, latched, locked, 0, 0, group);
}

std::uint32_t Keys::modifiers() const {
    const auto bit = [this](const char* name, Qt::KeyboardModifier modifier) {
        const bool on =
            xkb_state_mod_name_is_active(state_.get(), name, XKB_STATE_MODS_EFFECTIVE) > 0;
        return on ? static_cast<std::uint32_t>(modifier) : 0U;
    };
    return bit(XKB_MOD_NAME_SHIFT, Qt::ShiftModifier) |
           bit(XKB_MOD_NAME_CTRL, Qt::ControlModifier) | bit(XKB_MOD_NAME_ALT, Qt::AltModifier) |
           bit(XKB_MOD_NAME_LOGO, Qt::MetaModifier);
}

KeyEvent Keys::press(std::uint32_t key, bool isRepeat) const {
    // A key without meaning still gives an event.
    if (!state_) return {.key = Qt::Key_unknown, .isRepeat = isRepeat};
    const xkb_keycode_t code = key + kOffset;
    std::array<char, 16> text{};
    xkb_state_key_get_utf8(state_.get(), code, text.data(), text.size());
    return {.key = qtKey(xkb_state_key_get_one_sym(state_.get(), code)),
            .text = QString::fromUtf8(text.data()),
            .modifiers = modifiers(),
            .isRepeat = isRepeat};
}

bool Keys::repeats(std::uint32_t key) const {
    return keymap_ && xkb_keymap_key_repeats(keymap_.get(), key + kOffset) != 0;
}

}  // namespace platform::wayland
