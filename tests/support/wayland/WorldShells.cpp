// SPDX-License-Identifier: MIT
// The layer shell, and windows with their decorations.
#include <algorithm>

#include "tests/support/wayland/World.h"

namespace wltest {

namespace {

World& worldOf(wl_resource* resource) {
    return *link(resource).world;
}

SurfaceState& stateOf(wl_resource* resource) {
    static SurfaceState gone;
    SurfaceState* const found = worldOf(resource).surfaceOf(resource);
    return found ? *found : gone;
}

void acknowledge(wl_resource* resource, std::uint32_t serial, std::uint32_t error) {
    SurfaceState& surface = stateOf(resource);
    if (surface.serials.erase(serial) == 0)
        return wl_resource_post_error(resource, error, "no such configure: %u", serial);
    surface.acknowledged = true;
}

const struct zwlr_layer_surface_v1_interface kLayerSurface = {
    .set_size =
        [](wl_client*, wl_resource* r, std::uint32_t w, std::uint32_t h) {
            stateOf(r).asked = {static_cast<int>(w), static_cast<int>(h)};
        },
    .set_anchor = [](wl_client*, wl_resource* r,
                     std::uint32_t anchor) { stateOf(r).anchor = anchor; },
    .set_exclusive_zone = [](wl_client*, wl_resource* r,
                             std::int32_t zone) { stateOf(r).exclusiveZone = zone; },
    .set_margin = [](wl_client*, wl_resource*, std::int32_t, std::int32_t, std::int32_t,
                     std::int32_t) {},
    .set_keyboard_interactivity = [](wl_client*, wl_resource* r,
                                     std::uint32_t keyboard) { stateOf(r).keyboard = keyboard; },
    .get_popup = [](wl_client*, wl_resource*, wl_resource*) {},
    .ack_configure =
        [](wl_client*, wl_resource* r, std::uint32_t serial) {
            acknowledge(r, serial, ZWLR_LAYER_SURFACE_V1_ERROR_INVALID_SURFACE_STATE);
        },
    .destroy = destroyResource,
    .set_layer = [](wl_client*, wl_resource* r, std::uint32_t layer) { stateOf(r).layer = layer; },
};

void layerSurfaceGone(wl_resource* gone) {
    World& world = worldOf(gone);
    if (SurfaceState* const surface = world.surfaceOf(gone)) {
        surface->layerSurface = nullptr;
        if (surface->mapped) world.unmapped(*surface);
    }
    delete &link(gone);
}

const struct zwlr_layer_shell_v1_interface kLayerShell = {
    .get_layer_surface =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* of,
           wl_resource* output, std::uint32_t layer, const char* nameSpace) {
            World& world = worldOf(r);
            SurfaceState& surface = stateOf(of);
            if (surface.role != Role::None || surface.buffer)
                return wl_resource_post_error(r, ZWLR_LAYER_SHELL_V1_ERROR_ROLE, "has a role");
            surface.role = Role::Layer;
            surface.layer = layer;
            surface.nameSpace = nameSpace;
            if (output) {
                const OutputState* const on = world.outputOf(output);
                surface.output = on ? on->asked.name : "gone";
            }
            surface.layerSurface =
                world.make(client, &zwlr_layer_surface_v1_interface, wl_resource_get_version(r), id,
                           &kLayerSurface, surface.id, layerSurfaceGone);
            world.sendFraction(surface);
        },
    .destroy = destroyResource,
};

void setFullScreen(wl_resource* r, bool fullScreen, wl_resource* output) {
    World& world = worldOf(r);
    SurfaceState& surface = stateOf(r);
    surface.fullScreen = fullScreen;
    const OutputState* const on = output ? world.outputOf(output) : nullptr;
    if (on) surface.output = on->asked.name;
    world.sendFraction(surface);
    const OutputState* const place = world.outputFor(surface);
    if (surface.acknowledged && world.options.configuresByItself && place)
        world.configure(surface, fullScreen ? place->logical() : QSize());
}

const struct xdg_toplevel_interface kToplevel = {
    .destroy = destroyResource,
    .set_parent = [](wl_client*, wl_resource*, wl_resource*) {},
    .set_title = [](wl_client*, wl_resource* r, const char* title) { stateOf(r).title = title; },
    .set_app_id = [](wl_client*, wl_resource* r, const char* id) { stateOf(r).appId = id; },
    .show_window_menu = [](wl_client*, wl_resource*, wl_resource*, std::uint32_t, std::int32_t,
                           std::int32_t) {},
    .move = [](wl_client*, wl_resource*, wl_resource*, std::uint32_t) {},
    .resize = [](wl_client*, wl_resource*, wl_resource*, std::uint32_t, std::uint32_t) {},
    .set_max_size = [](wl_client*, wl_resource*, std::int32_t, std::int32_t) {},
    .set_min_size = [](wl_client*, wl_resource*, std::int32_t, std::int32_t) {},
    .set_maximized = [](wl_client*, wl_resource*) {},
    .unset_maximized = [](wl_client*, wl_resource*) {},
    .set_fullscreen = [](wl_client*, wl_resource* r,
                         wl_resource* output) { setFullScreen(r, true, output); },
    .unset_fullscreen = [](wl_client*, wl_resource* r) { setFullScreen(r, false, nullptr); },
    .set_minimized = [](wl_client*, wl_resource*) {},
};

void toplevelGone(wl_resource* gone) {
    World& world = worldOf(gone);
    if (SurfaceState* const surface = world.surfaceOf(gone)) {
        surface->toplevel = nullptr;
        if (surface->mapped) world.unmapped(*surface);
    }
    delete &link(gone);
}

const struct xdg_surface_interface kXdgSurface = {
    .destroy = destroyResource,
    .get_toplevel =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            SurfaceState& surface = stateOf(r);
            surface.role = Role::Toplevel;
            surface.toplevel =
                worldOf(r).make(client, &xdg_toplevel_interface, wl_resource_get_version(r), id,
                                &kToplevel, surface.id, toplevelGone);
        },
    .get_popup = [](wl_client*, wl_resource*, std::uint32_t, wl_resource*, wl_resource*) {},
    .set_window_geometry = [](wl_client*, wl_resource*, std::int32_t, std::int32_t, std::int32_t,
                              std::int32_t) {},
    .ack_configure = [](wl_client*, wl_resource* r,
                        std::uint32_t serial) { acknowledge(r, serial, 4); },
};

const struct xdg_wm_base_interface kWmBase = {
    .destroy = destroyResource,
    .create_positioner = [](wl_client*, wl_resource*, std::uint32_t) {},
    .get_xdg_surface =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* of) {
            World& world = worldOf(r);
            SurfaceState& surface = stateOf(of);
            if (surface.role != Role::None)
                return wl_resource_post_error(r, XDG_WM_BASE_ERROR_ROLE, "has a role");
            surface.xdgSurface =
                world.make(client, &xdg_surface_interface, wl_resource_get_version(r), id,
                           &kXdgSurface, surface.id, [](wl_resource* gone) {
                               if (SurfaceState* const s = worldOf(gone).surfaceOf(gone))
                                   s->xdgSurface = nullptr;
                               delete &link(gone);
                           });
        },
    .pong = [](wl_client*, wl_resource*, std::uint32_t) {},
};

const struct zxdg_toplevel_decoration_v1_interface kDecoration = {
    .destroy = destroyResource,
    .set_mode = [](wl_client*, wl_resource* r,
                   std::uint32_t mode) { zxdg_toplevel_decoration_v1_send_configure(r, mode); },
    .unset_mode = [](wl_client*, wl_resource*) {},
};

const struct zxdg_decoration_manager_v1_interface kDecorations = {
    .destroy = destroyResource,
    .get_toplevel_decoration =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* toplevel) {
            World& world = worldOf(r);
            stateOf(toplevel).decoration =
                world.make(client, &zxdg_toplevel_decoration_v1_interface, 1, id, &kDecoration,
                           link(toplevel).id, [](wl_resource* gone) {
                               stateOf(gone).decoration = nullptr;
                               delete &link(gone);
                           });
        },
};

template <typename Implementation>
struct Bound {
    World* world;
    const wl_interface* interface;
    const Implementation* requests;
};

template <typename Implementation>
void addGlobal(World& world, const wl_interface& interface, int version,
               const Implementation& requests) {
    static Bound<Implementation> bound;
    bound = {&world, &interface, &requests};
    wl_global_create(world.display, &interface, version, &bound,
                     [](wl_client* client, void* data, std::uint32_t asked, std::uint32_t id) {
                         const auto& of = *static_cast<Bound<Implementation>*>(data);
                         of.world->make(client, of.interface, static_cast<int>(asked), id,
                                        of.requests, 0);
                     });
}

}  // namespace

void World::addLayerShell() {
    addGlobal(*this, zwlr_layer_shell_v1_interface, 4, kLayerShell);
}

void World::addXdgShell() {
    addGlobal(*this, xdg_wm_base_interface, 3, kWmBase);
}

void World::addDecoration() {
    addGlobal(*this, zxdg_decoration_manager_v1_interface, 1, kDecorations);
}

void World::firstCommit(SurfaceState& surface) {
    if (surface.layerSurface && surface.asked.isEmpty() && surface.anchor != 15)
        return wl_resource_post_error(surface.layerSurface,
                                      ZWLR_LAYER_SURFACE_V1_ERROR_INVALID_SIZE, "no size");
    const OutputState* const output = outputFor(surface);
    if (surface.layerSurface && !output)
        return zwlr_layer_surface_v1_send_closed(surface.layerSurface);
    if (!options.configuresByItself) return;
    const bool fills = surface.layerSurface || surface.fullScreen;
    configure(surface, fills && output ? output->logical() : QSize(0, 0));
}

void World::configure(SurfaceState& surface, QSize size) {
    size = size.isValid() ? size : QSize(0, 0);
    surface.configured = size;
    const std::uint32_t serial = nextSerial();
    if (surface.layerSurface) {
        surface.serials.insert(serial);
        zwlr_layer_surface_v1_send_configure(surface.layerSurface, serial,
                                             static_cast<std::uint32_t>(size.width()),
                                             static_cast<std::uint32_t>(size.height()));
    } else if (surface.toplevel && surface.xdgSurface) {
        surface.serials.insert(serial);
        wl_array states;
        wl_array_init(&states);
        if (surface.fullScreen)
            *static_cast<std::uint32_t*>(wl_array_add(&states, sizeof(std::uint32_t))) =
                XDG_TOPLEVEL_STATE_FULLSCREEN;
        xdg_toplevel_send_configure(surface.toplevel, size.width(), size.height(), &states);
        wl_array_release(&states);
        xdg_surface_send_configure(surface.xdgSurface, serial);
    }
}

}  // namespace wltest
