// SPDX-License-Identifier: MIT
// The globals by which a client knows how lockers work, and the windows of other programs.
#include "tests/support/wayland/World.h"

namespace wltest {

namespace {

// Globals that are only seen.
const wl_interface kInputTaking = {"zwlr_input_inhibit_manager_v1", 1, 0, nullptr, 0, nullptr};
const wl_interface kSessionLock = {"ext_session_lock_manager_v1", 1, 0, nullptr, 0, nullptr};

const struct zwlr_foreign_toplevel_manager_v1_interface kManager = {
    .stop = [](wl_client*, wl_resource*) {}};

const struct zwlr_foreign_toplevel_handle_v1_interface kHandle = {
    .set_maximized = [](wl_client*, wl_resource*) {},
    .unset_maximized = [](wl_client*, wl_resource*) {},
    .set_minimized = [](wl_client*, wl_resource*) {},
    .unset_minimized = [](wl_client*, wl_resource*) {},
    .activate = [](wl_client*, wl_resource*, wl_resource*) {},
    .close = [](wl_client*, wl_resource*) {},
    .set_rectangle = [](wl_client*, wl_resource*, wl_resource*, std::int32_t, std::int32_t,
                        std::int32_t, std::int32_t) {},
    .destroy = destroyResource,
    .set_fullscreen = [](wl_client*, wl_resource*, wl_resource*) {},
    .unset_fullscreen = [](wl_client*, wl_resource*) {},
};

void bindManager(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    auto& world = *static_cast<World*>(data);
    wl_resource* const manager = world.make(client, &zwlr_foreign_toplevel_manager_v1_interface,
                                            static_cast<int>(version), id, &kManager, 0);
    wl_resource* const handle =
        world.make(client, &zwlr_foreign_toplevel_handle_v1_interface, static_cast<int>(version), 0,
                   &kHandle, 0, [](wl_resource* gone) {
                       drop(link(gone).world->toplevels, gone);
                       delete &link(gone);
                   });
    world.toplevels.push_back(handle);
    zwlr_foreign_toplevel_manager_v1_send_toplevel(manager, handle);
    world.sendToplevel(false);
}

}  // namespace

void World::addLocks() {
    const auto seen = [](wl_client*, void*, std::uint32_t, std::uint32_t) {};
    if (options.globals.inputTaking) wl_global_create(display, &kInputTaking, 1, this, seen);
    if (options.globals.sessionLock) wl_global_create(display, &kSessionLock, 1, this, seen);
    if (options.globals.toplevels)
        wl_global_create(display, &zwlr_foreign_toplevel_manager_v1_interface, 3, this,
                         bindManager);
}

void World::sendToplevel(bool active) {
    wl_array states;
    wl_array_init(&states);
    if (active)
        *static_cast<std::uint32_t*>(wl_array_add(&states, sizeof(std::uint32_t))) =
            ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED;
    for (wl_resource* const handle : toplevels) {
        zwlr_foreign_toplevel_handle_v1_send_state(handle, &states);
        zwlr_foreign_toplevel_handle_v1_send_done(handle);
    }
    wl_array_release(&states);
}

}  // namespace wltest
