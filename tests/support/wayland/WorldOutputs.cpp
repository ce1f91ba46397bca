// SPDX-License-Identifier: MIT
// Outputs, what is presented on them, and idleness.
#include <algorithm>
#include <cmath>

#include "tests/support/wayland/World.h"

namespace wltest {

namespace {

World& worldOf(wl_resource* resource) {
    return *link(resource).world;
}

const struct wl_output_interface kOutput = {.release = destroyResource};
const struct zxdg_output_v1_interface kXdgOutput = {.destroy = destroyResource};

void sendXdg(const OutputState& output, wl_resource* resource) {
    zxdg_output_v1_send_logical_position(resource, output.asked.at.x(), output.asked.at.y());
    zxdg_output_v1_send_logical_size(resource, output.logical().width(), output.logical().height());
}

const struct zxdg_output_manager_v1_interface kXdgOutputs = {
    .destroy = destroyResource,
    .get_xdg_output =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* of) {
            World& world = worldOf(r);
            OutputState* const output = world.outputOf(of);
            wl_resource* const made =
                world.make(client, &zxdg_output_v1_interface, wl_resource_get_version(r), id,
                           &kXdgOutput, 0, [](wl_resource* gone) {
                               for (const auto& [name, each] : worldOf(gone).outputs)
                                   drop(each->xdgResources, gone);
                               for (const auto& each : worldOf(gone).goneOutputs)
                                   drop(each->xdgResources, gone);
                               delete &link(gone);
                           });
            if (!output) return;
            output->xdgResources.push_back(made);
            sendXdg(*output, made);
            wl_output_send_done(of);
        },
};

void send(const OutputState& output, wl_resource* resource) {
    const Output& asked = output.asked;
    wl_output_send_geometry(resource, asked.at.x(), asked.at.y(), 300, 200,
                            WL_OUTPUT_SUBPIXEL_UNKNOWN, "Proef", "Scherm", asked.transform);
    wl_output_send_mode(resource, WL_OUTPUT_MODE_CURRENT | WL_OUTPUT_MODE_PREFERRED,
                        asked.mode.width(), asked.mode.height(), asked.refresh);
    const int version = wl_resource_get_version(resource);
    if (version >= WL_OUTPUT_SCALE_SINCE_VERSION)
        wl_output_send_scale(resource, static_cast<int>(std::ceil(asked.scale)));
    if (version >= WL_OUTPUT_NAME_SINCE_VERSION) wl_output_send_name(resource, asked.name.c_str());
    if (version >= WL_OUTPUT_DONE_SINCE_VERSION) wl_output_send_done(resource);
}

void bindOutput(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
    auto& output = *static_cast<OutputState*>(data);
    output.resources.push_back(
        output.world->make(client, &wl_output_interface, static_cast<int>(version), id, &kOutput, 0,
                           [](wl_resource* gone) {
                               for (const auto& [name, each] : worldOf(gone).outputs)
                                   drop(each->resources, gone);
                               for (const auto& each : worldOf(gone).goneOutputs)
                                   drop(each->resources, gone);
                               delete &link(gone);
                           }));
    send(output, output.resources.back());
}

const struct wp_presentation_interface kPresentation = {
    .destroy = destroyResource,
    .feedback =
        [](wl_client* client, wl_resource* r, wl_resource* surface, std::uint32_t id) {
            World& world = worldOf(r);
            world.surfaceOf(surface)->pending.feedbacks.push_back(
                world.make(client, &wp_presentation_feedback_interface, 1, id, nullptr,
                           link(surface).id, [](wl_resource* gone) {
                               if (SurfaceState* const s = worldOf(gone).surfaceOf(gone)) {
                                   drop(s->feedbacks, gone);
                                   drop(s->pending.feedbacks, gone);
                               }
                               delete &link(gone);
                           }));
        },
};

const struct ext_idle_notification_v1_interface kNotification = {.destroy = destroyResource};

const struct ext_idle_notifier_v1_interface kNotifier = {
    .destroy = destroyResource,
    .get_idle_notification =
        [](wl_client* client, wl_resource* r, std::uint32_t id, std::uint32_t milliseconds,
           wl_resource*) {
            World& world = worldOf(r);
            world.idles[world.make(client, &ext_idle_notification_v1_interface, 1, id,
                                   &kNotification, 0, [](wl_resource* gone) {
                                       worldOf(gone).idles.erase(gone);
                                       delete &link(gone);
                                   })] = milliseconds;
        },
};

const struct org_kde_kwin_idle_timeout_interface kKdeTimeout = {
    .release = destroyResource,
    .simulate_user_activity = [](wl_client*, wl_resource*) {},
};

const struct org_kde_kwin_idle_interface kKdeIdle = {
    .get_idle_timeout = [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource*,
                           std::uint32_t milliseconds) {
        World& world = worldOf(r);
        world.kdeIdles[world.make(client, &org_kde_kwin_idle_timeout_interface, 1, id, &kKdeTimeout,
                                  0, [](wl_resource* gone) {
                                      worldOf(gone).kdeIdles.erase(gone);
                                      delete &link(gone);
                                  })] = milliseconds;
    }};

}  // namespace

void World::addPresentation() {
    wl_global_create(
        display, &wp_presentation_interface, 1, this,
        [](wl_client* client, void* data, std::uint32_t, std::uint32_t id) {
            auto& world = *static_cast<World*>(data);
            wp_presentation_send_clock_id(
                world.make(client, &wp_presentation_interface, 1, id, &kPresentation, 0),
                world.options.presentationClock);
        });
}

void World::addIdle() {
    wl_global_create(display, &ext_idle_notifier_v1_interface, 1, this,
                     [](wl_client* client, void* data, std::uint32_t, std::uint32_t id) {
                         static_cast<World*>(data)->make(client, &ext_idle_notifier_v1_interface, 1,
                                                         id, &kNotifier, 0);
                     });
}

void World::addKdeIdle() {
    wl_global_create(display, &org_kde_kwin_idle_interface, 1, this,
                     [](wl_client* client, void* data, std::uint32_t, std::uint32_t id) {
                         static_cast<World*>(data)->make(client, &org_kde_kwin_idle_interface, 1,
                                                         id, &kKdeIdle, 0);
                     });
}

void World::addOutputs() {
    if (!options.globals.xdgOutput) return;
    wl_global_create(display, &zxdg_output_manager_v1_interface, 3, this,
                     [](wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
                         static_cast<World*>(data)->make(client, &zxdg_output_manager_v1_interface,
                                                         static_cast<int>(version), id,
                                                         &kXdgOutputs, 0);
                     });
}

void World::addOutput(const Output& asked) {
    auto output = std::make_unique<OutputState>();
    output->world = this;
    output->asked = asked;
    output->global = wl_global_create(display, &wl_output_interface, 4, output.get(), bindOutput);
    outputs[asked.name] = std::move(output);
}

void World::removeOutput(const std::string& name) {
    const auto found = outputs.find(name);
    if (found == outputs.end()) return;
    // A client may still bind it: the global is gone, what it stood for is not.
    wl_global_remove(found->second->global);
    goneOutputs.push_back(std::move(found->second));
    outputs.erase(found);
    for (const auto& [id, surface] : surfaces)
        if (surface->layerSurface && surface->output == name)
            zwlr_layer_surface_v1_send_closed(surface->layerSurface);
    pointerTo(pointerAt);
    findKeyFocus();
}

void World::sendOutput(OutputState& output) {
    for (wl_resource* const resource : output.xdgResources)
        sendXdg(output, resource);
    for (wl_resource* const resource : output.resources)
        send(output, resource);
    for (const auto& [id, surface] : surfaces) {
        if (outputFor(*surface) != &output) continue;
        sendFraction(*surface);
        const bool fills = surface->layerSurface || surface->fullScreen;
        if (fills && options.configuresByItself && surface->mapped)
            configure(*surface, output.logical());
    }
}

}  // namespace wltest
