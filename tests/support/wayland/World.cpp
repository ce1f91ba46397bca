// SPDX-License-Identifier: MIT
#include "tests/support/wayland/World.h"

#include <sys/mman.h>
#include <xkbcommon/xkbcommon.h>

#include <algorithm>
#include <cmath>

namespace wltest {

namespace {

void count(void* data, wl_protocol_logger_type direction,
           const wl_protocol_logger_message* message) {
    if (direction != WL_PROTOCOL_LOGGER_REQUEST) return;
    auto& world = *static_cast<World*>(data);
    ++world.requests[std::string(wl_resource_get_class(message->resource)) + '.' +
                     message->message->name];
}

int tick(void* data) {
    auto& world = *static_cast<World*>(data);
    if (world.options.frames == Frames::Always) world.frameAll(world.clock.now());
    wl_event_source_timer_update(world.timer, 16);
    return 0;
}

}  // namespace

QSize OutputState::logical() const {
    const QSize turned = asked.transform % 2 != 0 ? asked.mode.transposed() : asked.mode;
    return {static_cast<int>(std::lround(turned.width() / asked.scale)),
            static_cast<int>(std::lround(turned.height() / asked.scale))};
}

World::World(const Options& o) : options(o), display(wl_display_create()) {
    loop = wl_display_get_event_loop(display);
    logger = wl_display_add_protocol_logger(display, count, this);
    wl_display_init_shm(display);
    addSurfaces();
    for (const Output& output : options.outputs)
        addOutput(output);
    addSeat();
    addOutputs();
    if (options.globals.presentation) addPresentation();
    if (options.globals.layerShell) addLayerShell();
    if (options.globals.xdgShell) addXdgShell();
    if (options.globals.decoration) addDecoration();
    if (options.globals.idle) addIdle();
    if (options.globals.kdeIdle) addKdeIdle();
    addLocks();
    timer = wl_event_loop_add_timer(loop, tick, this);
    wl_event_source_timer_update(timer, 16);
}

World::~World() {
    wl_display_destroy_clients(display);
    wl_event_source_remove(timer);
    wl_protocol_logger_destroy(logger);
    wl_display_destroy(display);
    xkb_state_unref(keyState);
    xkb_keymap_unref(keymap);
    xkb_context_unref(xkbContext);
}

SurfaceState* World::find(std::uint64_t id) {
    const auto found = surfaces.find(id);
    return found == surfaces.end() ? nullptr : found->second.get();
}

OutputState* World::outputOf(wl_resource* resource) {
    for (const auto& [name, output] : outputs)
        if (std::count(output->resources.begin(), output->resources.end(), resource) != 0)
            return output.get();
    return nullptr;
}

OutputState* World::outputFor(const SurfaceState& surface) {
    const auto found = outputs.find(surface.output);
    if (found != outputs.end()) return found->second.get();
    return outputs.empty() || !surface.output.empty() ? nullptr : outputs.begin()->second.get();
}

QRect World::placeOf(const SurfaceState& surface) {
    const OutputState* const output = outputFor(surface);
    if (!output) return {};
    return {output->asked.at, surface.logical};
}

wl_resource* World::make(wl_client* client, const wl_interface* interface, int version,
                         std::uint32_t id, const void* implementation, std::uint64_t object,
                         wl_resource_destroy_func_t destroyed) {
    wl_resource* const resource = wl_resource_create(client, interface, version, id);
    auto* const data = new Link{this, object};
    wl_resource_set_implementation(
        resource, implementation, data,
        destroyed ? destroyed : [](wl_resource* gone) { delete &link(gone); });
    return resource;
}

void World::frame(SurfaceState& surface, double seconds, std::uint32_t interval) {
    ++milliseconds;
    for (wl_resource* const callback : std::exchange(surface.frames, {})) {
        wl_callback_send_done(callback, milliseconds);
        wl_resource_destroy(callback);
    }
    if (!options.reportsPresentation) return;
    const auto whole = static_cast<std::uint64_t>(seconds);
    const auto nanoseconds =
        static_cast<std::uint32_t>((seconds - static_cast<double>(whole)) * 1e9);
    for (wl_resource* const feedback : std::exchange(surface.feedbacks, {})) {
        wp_presentation_feedback_send_presented(
            feedback, static_cast<std::uint32_t>(whole >> 32U), static_cast<std::uint32_t>(whole),
            nanoseconds, interval, 0, milliseconds, WP_PRESENTATION_FEEDBACK_KIND_VSYNC);
        wl_resource_destroy(feedback);
    }
}

void World::frameAll(double seconds, std::uint32_t interval) {
    for (const auto& [id, surface] : surfaces)
        if (showsSurfaces && surface->mapped && outputFor(*surface))
            frame(*surface, seconds, interval);
}

}  // namespace wltest
