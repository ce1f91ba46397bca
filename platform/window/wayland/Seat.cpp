// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Seat.h"

#include <linux/input-event-codes.h>
#include <unistd.h>
#include <wayland-cursor.h>

#include <utility>

namespace platform::wayland {

namespace {

constexpr int kCursorSize = 24;  // points, where the environment names none

QPointF point(wl_fixed_t x, wl_fixed_t y) {
    return {wl_fixed_to_double(x), wl_fixed_to_double(y)};
}

InputTarget::Button buttonOf(std::uint32_t code) {
    using Button = InputTarget::Button;
    return code == BTN_LEFT ? Button::Left : code == BTN_RIGHT ? Button::Right : Button::Other;
}

}  // namespace

// The compositor's events, passed to the seat in the data pointer.
struct Seat::Listeners {
    static Seat& of(void* data) { return *static_cast<Seat*>(data); }
    static const wl_seat_listener kSeat;
    static const wl_keyboard_listener kKeyboard;
    static const wl_pointer_listener kPointer;
    static const wl_touch_listener kTouch;
};

const wl_seat_listener Seat::Listeners::kSeat = {
    .capabilities = [](void* data, wl_seat*,
                       std::uint32_t capabilities) { of(data).setCapabilities(capabilities); },
    .name = [](void*, wl_seat*, const char*) {},
};

const wl_keyboard_listener Seat::Listeners::kKeyboard = {
    .keymap =
        [](void* data, wl_keyboard*, std::uint32_t format, std::int32_t file, std::uint32_t size) {
            if (format == WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1) {
                of(data).keys_.setKeymap(file, size);
            } else {
                close(file);
            }
        },
    .enter = [](void* data, wl_keyboard*, std::uint32_t, wl_surface* surface,
                wl_array*) { of(data).setKeyTarget(of(data).targetOf(surface)); },
    .leave = [](void* data, wl_keyboard*, std::uint32_t,
                wl_surface*) { of(data).setKeyTarget(nullptr); },
    .key = [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t, std::uint32_t key,
              std::uint32_t state) { of(data).key(key, state == WL_KEYBOARD_KEY_STATE_PRESSED); },
    .modifiers =
        [](void* data, wl_keyboard*, std::uint32_t, std::uint32_t depressed, std::uint32_t latched,
           std::uint32_t locked,
           std::uint32_t group) { of(data).keys_.setModifiers(depressed, latched, locked, group); },
    .repeat_info =
        [](void* data, wl_keyboard*, std::int32_t rate, std::int32_t delay) {
            of(data).repeatInterval_ = rate > 0 ? 1.0 / rate : 0.0;
            of(data).repeatDelay_ = delay / 1000.0;
        },
};

const wl_pointer_listener Seat::Listeners::kPointer = {
    .enter =
        [](void* data, wl_pointer*, std::uint32_t serial, wl_surface* surface, wl_fixed_t x,
           wl_fixed_t y) {
            Seat& seat = of(data);
            seat.pointerTarget_ = seat.targetOf(surface);
            seat.entered_ = serial;
            seat.at_ = point(x, y);
            seat.showCursor();
            if (seat.pointerTarget_) seat.pointerTarget_->pointerMoved(seat.at_);
        },
    .leave = [](void* data, wl_pointer*, std::uint32_t,
                wl_surface*) { of(data).pointerTarget_ = nullptr; },
    .motion =
        [](void* data, wl_pointer*, std::uint32_t, wl_fixed_t x, wl_fixed_t y) {
            of(data).at_ = point(x, y);
            if (InputTarget* const target = of(data).pointerTarget_)
                target->pointerMoved(of(data).at_);
        },
    .button =
        [](void* data, wl_pointer*, std::uint32_t, std::uint32_t, std::uint32_t button,
           std::uint32_t state) {
            if (state != WL_POINTER_BUTTON_STATE_PRESSED) return;
            if (InputTarget* const target = of(data).pointerTarget_)
                target->buttonPressed(buttonOf(button), of(data).at_);
        },
    .axis = [](void*, wl_pointer*, std::uint32_t, std::uint32_t, wl_fixed_t) {},
    .frame = [](void*, wl_pointer*) {},
    .axis_source = [](void*, wl_pointer*, std::uint32_t) {},
    .axis_stop = [](void*, wl_pointer*, std::uint32_t, std::uint32_t) {},
    .axis_discrete = [](void*, wl_pointer*, std::uint32_t, std::int32_t) {},
};

const wl_touch_listener Seat::Listeners::kTouch = {
    .down =
        [](void* data, wl_touch*, std::uint32_t, std::uint32_t, wl_surface* surface, std::int32_t,
           wl_fixed_t x, wl_fixed_t y) {
            // A touch counts as a click.
            if (InputTarget* const target = of(data).targetOf(surface))
                target->buttonPressed(InputTarget::Button::Left, point(x, y));
        },
    .up = [](void*, wl_touch*, std::uint32_t, std::uint32_t, std::int32_t) {},
    .motion = [](void*, wl_touch*, std::uint32_t, std::int32_t, wl_fixed_t, wl_fixed_t) {},
    .frame = [](void*, wl_touch*) {},
    .cancel = [](void*, wl_touch*) {},
    .shape = [](void*, wl_touch*, std::int32_t, wl_fixed_t, wl_fixed_t) {},
    .orientation = [](void*, wl_touch*, std::int32_t, wl_fixed_t) {},
};

void Seat::CursorThemeEnd::operator()(wl_cursor_theme* theme) const {
    wl_cursor_theme_destroy(theme);
}

Seat::Seat(MediaClock& clock) : clock_(clock) {}

Seat::~Seat() = default;

void Seat::bind(Proxy<wl_seat> seat, std::uint32_t globalName) {
    if (seat_) return;
    seat_ = std::move(seat);
    globalName_ = globalName;
    wl_seat_add_listener(seat_.get(), &Listeners::kSeat, this);
}

void Seat::remove(std::uint32_t globalName) {
    if (!seat_ || globalName != globalName_) return;
    setCapabilities(0);
    seat_.reset();
}

void Seat::setCursorSource(wl_compositor* compositor, wl_shm* shm) {
    compositor_ = compositor;
    shm_ = shm;
}

// Each target hears of all keyboards.
void Seat::tellOfKeyboard() {
    if (!targets_.empty()) targets_.begin()->second->keyboardChanged();
}

void Seat::setCapabilities(std::uint32_t capabilities) {
    const bool keyboard = (capabilities & WL_SEAT_CAPABILITY_KEYBOARD) != 0;
    const bool pointer = (capabilities & WL_SEAT_CAPABILITY_POINTER) != 0;
    const bool touch = (capabilities & WL_SEAT_CAPABILITY_TOUCH) != 0;
    if (keyboard && !keyboard_) {
        keyboard_.reset(wl_seat_get_keyboard(seat_.get()));
        wl_keyboard_add_listener(keyboard_.get(), &Listeners::kKeyboard, this);
        tellOfKeyboard();
    } else if (!keyboard && keyboard_) {
        keyboard_.reset();
        setKeyTarget(nullptr);
        tellOfKeyboard();
    }
    if (pointer && !pointer_) {
        pointer_.reset(wl_seat_get_pointer(seat_.get()));
        wl_pointer_add_listener(pointer_.get(), &Listeners::kPointer, this);
    } else if (!pointer && pointer_) {
        pointerTarget_ = nullptr;
        pointer_.reset();
    }
    if (touch && !touch_) {
        touch_.reset(wl_seat_get_touch(seat_.get()));
        wl_touch_add_listener(touch_.get(), &Listeners::kTouch, this);
    } else if (!touch) {
        touch_.reset();
    }
}

void Seat::setKeyTarget(InputTarget* target) {
    repeatEnds();
    InputTarget* const before = std::exchange(keyTarget_, target);
    if (before == target) return;
    if (before) before->keyboardChanged();
    // The old target's action may have changed or ended the new target.
    if (target && keyTarget_ == target) target->keyboardChanged();
}

void Seat::repeatEnds() {
    held_.reset();
    repeat_.invalidate();
}

void Seat::key(std::uint32_t key, bool pressed) {
    if (!pressed) {
        if (held_ == key) repeatEnds();
        return;
    }
    if (!keyTarget_) return;
    const bool repeats = repeatInterval_ > 0.0 && keys_.repeats(key);
    if (repeats) {
        held_ = key;
        repeat_ = Timer(clock_, {.interval = repeatInterval_, .repeats = true}, [this] {
            if (keyTarget_ && held_) keyTarget_->keyPressed(keys_.press(*held_, true));
        });
        repeat_.fireNextAt(clock_.now() + repeatDelay_);
    }
    keyTarget_->keyPressed(keys_.press(key, false));
}

InputTarget* Seat::targetOf(wl_surface* surface) const {
    const auto found = targets_.find(surface);
    return found == targets_.end() ? nullptr : found->second;
}

void Seat::release(wl_surface* surface) {
    const InputTarget* const target = targetOf(surface);
    targets_.erase(surface);
    if (!target) return;
    if (keyTarget_ == target) {
        repeatEnds();
        keyTarget_ = nullptr;
    }
    if (pointerTarget_ == target) pointerTarget_ = nullptr;
}

void Seat::cursorChanged(const InputTarget& target) {
    if (pointerTarget_ == &target) showCursor();
}

void Seat::showCursor() {
    if (!pointer_ || !pointerTarget_) return;
    if (pointerTarget_->hidesCursor())
        return wl_pointer_set_cursor(pointer_.get(), entered_, nullptr, 0, 0);
    if (!theme_ && shm_) theme_.reset(wl_cursor_theme_load(nullptr, kCursorSize, shm_));
    wl_cursor* const arrow =
        theme_ ? wl_cursor_theme_get_cursor(theme_.get(), "left_ptr") : nullptr;
    if (!arrow || arrow->image_count == 0 || !compositor_) return;
    const wl_cursor_image& image = *arrow->images[0];
    if (!cursor_) cursor_.reset(wl_compositor_create_surface(compositor_));
    wl_surface_attach(cursor_.get(), wl_cursor_image_get_buffer(arrow->images[0]), 0, 0);
    wl_surface_damage_buffer(cursor_.get(), 0, 0, static_cast<int>(image.width),
                             static_cast<int>(image.height));
    wl_surface_commit(cursor_.get());
    wl_pointer_set_cursor(pointer_.get(), entered_, cursor_.get(),
                          static_cast<int>(image.hotspot_x), static_cast<int>(image.hotspot_y));
}

}  // namespace platform::wayland
