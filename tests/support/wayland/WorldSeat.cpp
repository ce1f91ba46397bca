// SPDX-License-Identifier: MIT
// The seat: who has the keyboard and the pointer, and what they do.
#include <linux/input-event-codes.h>
#include <sys/mman.h>
#include <unistd.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cstring>

#include "tests/support/wayland/World.h"

namespace wltest {

namespace {

World& worldOf(wl_resource* resource) {
    return *link(resource).world;
}

const struct wl_pointer_interface kPointer = {
    .set_cursor =
        [](wl_client*, wl_resource* r, std::uint32_t, wl_resource* surface, std::int32_t,
           std::int32_t) {
            World& world = worldOf(r);
            SurfaceState* const state = surface ? world.surfaceOf(surface) : nullptr;
            world.cursorHidden = !state;
            if (state) state->role = Role::Cursor;
        },
    .release = destroyResource,
};

const struct wl_keyboard_interface kKeyboard = {.release = destroyResource};

void sendKeymap(World& world, wl_resource* keyboard) {
    char* const text = xkb_keymap_get_as_string(world.keymap, XKB_KEYMAP_FORMAT_TEXT_V1);
    const std::size_t size = std::strlen(text) + 1;
    const int file = memfd_create("keymap", MFD_CLOEXEC);
    if (write(file, text, size) == static_cast<ssize_t>(size))
        wl_keyboard_send_keymap(keyboard, WL_KEYBOARD_KEYMAP_FORMAT_XKB_V1, file,
                                static_cast<std::uint32_t>(size));
    close(file);
    std::free(text);
}

const struct wl_seat_interface kSeat = {
    .get_pointer =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            World& world = worldOf(r);
            world.pointers.push_back(world.make(client, &wl_pointer_interface,
                                                wl_resource_get_version(r), id, &kPointer, 0,
                                                [](wl_resource* gone) {
                                                    drop(worldOf(gone).pointers, gone);
                                                    delete &link(gone);
                                                }));
            world.pointerFocus = 0;
            world.pointerTo(world.pointerAt);
        },
    .get_keyboard =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            World& world = worldOf(r);
            wl_resource* const made =
                world.make(client, &wl_keyboard_interface, wl_resource_get_version(r), id,
                           &kKeyboard, 0, [](wl_resource* gone) {
                               drop(worldOf(gone).keyboards, gone);
                               delete &link(gone);
                           });
            world.keyboards.push_back(made);
            sendKeymap(world, made);
            if (wl_resource_get_version(made) >= WL_KEYBOARD_REPEAT_INFO_SINCE_VERSION)
                wl_keyboard_send_repeat_info(made, 25, 600);
            world.keyFocus = 0;
            world.findKeyFocus();
        },
    .get_touch = [](wl_client*, wl_resource*, std::uint32_t) {},
    .release = destroyResource,
};

// Calls the action for each of a list that belongs to the surface's client.
template <typename Action>
void each(const std::vector<wl_resource*>& list, const SurfaceState& surface, Action action) {
    for (wl_resource* const resource : list)
        if (wl_resource_get_client(resource) == wl_resource_get_client(surface.resource))
            action(resource);
}

void sendFrame(wl_resource* pointer) {
    if (wl_resource_get_version(pointer) >= WL_POINTER_FRAME_SINCE_VERSION)
        wl_pointer_send_frame(pointer);
}

}  // namespace

void World::addSeat() {
    xkbContext = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    const xkb_rule_names names{
        .rules = "evdev", .model = "pc105", .layout = "us", .variant = "", .options = ""};
    keymap = xkb_keymap_new_from_names(xkbContext, &names, XKB_KEYMAP_COMPILE_NO_FLAGS);
    keyState = xkb_state_new(keymap);
    seatGlobal = wl_global_create(
        display, &wl_seat_interface, 7, this,
        [](wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
            auto& world = *static_cast<World*>(data);
            wl_resource* const made =
                world.make(client, &wl_seat_interface, static_cast<int>(version), id, &kSeat, 0,
                           [](wl_resource* gone) {
                               drop(worldOf(gone).seats, gone);
                               delete &link(gone);
                           });
            world.seats.push_back(made);
            wl_seat_send_capabilities(made, world.capabilities);
        });
}

SurfaceState* World::hit(QPointF at) {
    SurfaceState* best = nullptr;
    const auto rank = [](const SurfaceState& s) {
        // A full-screen window lies over the layer `top` and under `overlay`.
        if (s.role == Role::Toplevel) return s.fullScreen ? 5 : 3;
        return static_cast<int>(s.layer) * 2;
    };
    for (const auto& [id, surface] : surfaces) {
        if (!surface->mapped) continue;
        const QRect place = placeOf(*surface);
        if (!QRectF(place).contains(at)) continue;
        const QPoint inside = (at - place.topLeft()).toPoint();
        if (surface->input && !surface->input->contains(inside)) continue;
        if (!best || rank(*surface) >= rank(*best)) best = surface.get();
    }
    return best;
}

void World::focusPointer(SurfaceState* surface) {
    const std::uint64_t id = surface ? surface->id : 0;
    if (id == pointerFocus) return;
    if (SurfaceState* const before = find(pointerFocus))
        each(pointers, *before, [&](wl_resource* pointer) {
            wl_pointer_send_leave(pointer, nextSerial(), before->resource);
            sendFrame(pointer);
        });
    pointerFocus = id;
    cursorHidden = false;
    if (!surface) return;
    const QPointF inside = pointerAt - placeOf(*surface).topLeft();
    each(pointers, *surface, [&](wl_resource* pointer) {
        wl_pointer_send_enter(pointer, nextSerial(), surface->resource,
                              wl_fixed_from_double(inside.x()), wl_fixed_from_double(inside.y()));
        sendFrame(pointer);
    });
}

void World::pointerTo(QPointF at) {
    const bool moved = at != pointerAt;
    pointerAt = at;
    SurfaceState* const surface = hit(at);
    const bool stays = surface && surface->id == pointerFocus;
    focusPointer(surface);
    if (!stays || !moved) return;
    const QPointF inside = at - placeOf(*surface).topLeft();
    each(pointers, *surface, [&](wl_resource* pointer) {
        wl_pointer_send_motion(pointer, ++milliseconds, wl_fixed_from_double(inside.x()),
                               wl_fixed_from_double(inside.y()));
        sendFrame(pointer);
    });
}

void World::button(std::uint32_t code, bool pressed) {
    SurfaceState* const surface = find(pointerFocus);
    if (!surface) return;
    each(pointers, *surface, [&](wl_resource* pointer) {
        wl_pointer_send_button(
            pointer, nextSerial(), ++milliseconds, code,
            pressed ? WL_POINTER_BUTTON_STATE_PRESSED : WL_POINTER_BUTTON_STATE_RELEASED);
        sendFrame(pointer);
    });
}

void World::findKeyFocus() {
    if (!givesKeyboard) return focusKeys(nullptr);
    SurfaceState* best = nullptr;
    for (const auto& [id, surface] : surfaces)
        if (surface->mapped && surface->role == Role::Layer && surface->layer >= 2 &&
            surface->keyboard == 1 && outputFor(*surface) && (!best || surface->id == keyFocus))
            best = surface.get();
    if (!best && !isLocked && !keyOrder.empty()) best = find(keyOrder.back());
    focusKeys(best);
}

void World::focusKeys(SurfaceState* surface) {
    const std::uint64_t id = surface ? surface->id : 0;
    if (id == keyFocus) return;
    if (SurfaceState* const before = find(keyFocus))
        each(keyboards, *before, [&](wl_resource* keyboard) {
            wl_keyboard_send_leave(keyboard, nextSerial(), before->resource);
        });
    keyFocus = id;
    if (!surface) return;
    wl_array none;
    wl_array_init(&none);
    each(keyboards, *surface, [&](wl_resource* keyboard) {
        wl_keyboard_send_enter(keyboard, nextSerial(), surface->resource, &none);
    });
    wl_array_release(&none);
    sendModifiers();
}

void World::sendModifiers() {
    const SurfaceState* const surface = find(keyFocus);
    if (!surface) return;
    each(keyboards, *surface, [&](wl_resource* keyboard) {
        wl_keyboard_send_modifiers(
            keyboard, nextSerial(), xkb_state_serialize_mods(keyState, XKB_STATE_MODS_DEPRESSED),
            xkb_state_serialize_mods(keyState, XKB_STATE_MODS_LATCHED),
            xkb_state_serialize_mods(keyState, XKB_STATE_MODS_LOCKED),
            xkb_state_serialize_layout(keyState, XKB_STATE_LAYOUT_EFFECTIVE));
    });
}

void World::key(std::uint32_t code, bool pressed) {
    const bool changes =
        xkb_state_update_key(keyState, code + 8, pressed ? XKB_KEY_DOWN : XKB_KEY_UP) != 0;
    if (const SurfaceState* const surface = find(keyFocus))
        each(keyboards, *surface, [&](wl_resource* keyboard) {
            wl_keyboard_send_key(
                keyboard, nextSerial(), ++milliseconds, code,
                pressed ? WL_KEYBOARD_KEY_STATE_PRESSED : WL_KEYBOARD_KEY_STATE_RELEASED);
        });
    if (changes) sendModifiers();
}

}  // namespace wltest
