// SPDX-License-Identifier: MIT
// wl_compositor and what hangs on its surfaces.
#include <algorithm>
#include <cmath>
#include <utility>

#include "tests/support/wayland/World.h"

namespace wltest {

namespace {

constexpr std::ptrdiff_t kMostCommits = 1000;

World& worldOf(wl_resource* resource) {
    return *link(resource).world;
}

void addDamage(wl_resource* r, bool inBuffer, const QRect& rect) {
    Pending& pending = worldOf(r).surfaceOf(r)->pending;
    pending.damage.push_back(rect);
    pending.surfaceDamage = pending.surfaceDamage || !inBuffer;
}

const struct wl_surface_interface kSurface = {
    .destroy = destroyResource,
    .attach =
        [](wl_client*, wl_resource* r, wl_resource* buffer, std::int32_t, std::int32_t) {
            Pending& pending = worldOf(r).surfaceOf(r)->pending;
            pending.attached = true;
            pending.buffer = buffer;
        },
    .damage =
        [](wl_client*, wl_resource* r, std::int32_t x, std::int32_t y, std::int32_t w,
           std::int32_t h) {
            addDamage(r, false, {x, y, w, h});
        },
    .frame =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            World& world = worldOf(r);
            const auto gone = [](wl_resource* callback) {
                World& w = worldOf(callback);
                if (SurfaceState* const surface = w.surfaceOf(callback)) {
                    drop(surface->frames, callback);
                    drop(surface->pending.frames, callback);
                }
                delete &link(callback);
            };
            world.surfaceOf(r)->pending.frames.push_back(
                world.make(client, &wl_callback_interface, 1, id, nullptr, link(r).id, gone));
        },
    .set_opaque_region =
        [](wl_client*, wl_resource* r, wl_resource* region) {
            World& world = worldOf(r);
            world.surfaceOf(r)->pending.opaque =
                region ? world.regions[link(region).id] : QRegion();
        },
    .set_input_region =
        [](wl_client*, wl_resource* r, wl_resource* region) {
            World& world = worldOf(r);
            std::optional<QRegion> input;
            if (region) input = world.regions[link(region).id];
            world.surfaceOf(r)->pending.input = input;
        },
    .commit = [](wl_client*, wl_resource* r) { worldOf(r).commit(*worldOf(r).surfaceOf(r)); },
    .set_buffer_transform =
        [](wl_client*, wl_resource* r, std::int32_t transform) {
            worldOf(r).surfaceOf(r)->transform = transform;
        },
    .set_buffer_scale =
        [](wl_client*, wl_resource* r, std::int32_t scale) {
            if (scale < 1)
                return wl_resource_post_error(r, WL_SURFACE_ERROR_INVALID_SCALE, "scale");
            worldOf(r).surfaceOf(r)->bufferScale = scale;
        },
    .damage_buffer =
        [](wl_client*, wl_resource* r, std::int32_t x, std::int32_t y, std::int32_t w,
           std::int32_t h) {
            addDamage(r, true, {x, y, w, h});
        },
    .offset = [](wl_client*, wl_resource*, std::int32_t, std::int32_t) {},
};

const struct wl_region_interface kRegion = {
    .destroy = destroyResource,
    .add = [](wl_client*, wl_resource* r, std::int32_t x, std::int32_t y, std::int32_t w,
              std::int32_t h) { worldOf(r).regions[link(r).id] += QRect(x, y, w, h); },
    .subtract = [](wl_client*, wl_resource* r, std::int32_t x, std::int32_t y, std::int32_t w,
                   std::int32_t h) { worldOf(r).regions[link(r).id] -= QRect(x, y, w, h); },
};

const struct wl_compositor_interface kCompositor = {
    .create_surface =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            World& world = worldOf(r);
            auto surface = std::make_unique<SurfaceState>();
            surface->id = ++world.lastId;
            surface->resource =
                world.make(client, &wl_surface_interface, wl_resource_get_version(r), id, &kSurface,
                           surface->id, [](wl_resource* gone) {
                               World& w = worldOf(gone);
                               w.forget(*w.surfaceOf(gone));
                               delete &link(gone);
                           });
            const std::uint64_t key = surface->id;
            world.surfaces[key] = std::move(surface);
        },
    .create_region =
        [](wl_client* client, wl_resource* r, std::uint32_t id) {
            World& world = worldOf(r);
            world.make(client, &wl_region_interface, 1, id, &kRegion, ++world.lastId,
                       [](wl_resource* gone) {
                           worldOf(gone).regions.erase(link(gone).id);
                           delete &link(gone);
                       });
        },
};

// Drops a wp_viewport's destination with it.
void viewportGone(wl_resource* gone) {
    if (SurfaceState* const surface = worldOf(gone).surfaceOf(gone)) {
        surface->destination = {};
        surface->viewport = nullptr;
    }
    delete &link(gone);
}

const struct wp_viewport_interface kViewport = {
    .destroy = destroyResource,
    .set_source = [](wl_client*, wl_resource*, wl_fixed_t, wl_fixed_t, wl_fixed_t, wl_fixed_t) {},
    .set_destination =
        [](wl_client*, wl_resource* r, std::int32_t width, std::int32_t height) {
            SurfaceState* const surface = worldOf(r).surfaceOf(r);
            if (!surface)
                return wl_resource_post_error(r, WP_VIEWPORT_ERROR_NO_SURFACE, "no surface");
            const bool unset = width == -1 && height == -1;
            if (!unset && (width <= 0 || height <= 0))
                return wl_resource_post_error(r, WP_VIEWPORT_ERROR_BAD_VALUE, "destination");
            surface->destination = unset ? QSize() : QSize(width, height);
        },
};

const struct wp_viewporter_interface kViewporter = {
    .destroy = destroyResource,
    .get_viewport =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* surface) {
            World& world = worldOf(r);
            SurfaceState& state = *world.surfaceOf(surface);
            if (state.viewport)
                return wl_resource_post_error(r, WP_VIEWPORTER_ERROR_VIEWPORT_EXISTS, "exists");
            state.viewport = world.make(client, &wp_viewport_interface, 1, id, &kViewport,
                                        link(surface).id, viewportGone);
        },
};

const struct wp_fractional_scale_v1_interface kFraction = {.destroy = destroyResource};

const struct wp_fractional_scale_manager_v1_interface kFractions = {
    .destroy = destroyResource,
    .get_fractional_scale =
        [](wl_client* client, wl_resource* r, std::uint32_t id, wl_resource* surface) {
            World& world = worldOf(r);
            SurfaceState& state = *world.surfaceOf(surface);
            state.fraction =
                world.make(client, &wp_fractional_scale_v1_interface, 1, id, &kFraction,
                           link(surface).id, [](wl_resource* gone) {
                               if (SurfaceState* const s = worldOf(gone).surfaceOf(gone))
                                   s->fraction = nullptr;
                               delete &link(gone);
                           });
            world.sendFraction(state);
        },
};

template <const wl_interface* interface, int version>
void global(World& world, const void* implementation) {
    static const void* requests;
    requests = implementation;
    wl_global_create(world.display, interface, version, &world,
                     [](wl_client* client, void* data, std::uint32_t bound, std::uint32_t id) {
                         static_cast<World*>(data)->make(client, interface, static_cast<int>(bound),
                                                         id, requests, 0);
                     });
}

// Copies what a client drew, as a compositor without a GPU may.
QImage copyOf(wl_shm_buffer* buffer) {
    const int width = wl_shm_buffer_get_width(buffer);
    const int height = wl_shm_buffer_get_height(buffer);
    const bool opaque = wl_shm_buffer_get_format(buffer) == WL_SHM_FORMAT_XRGB8888;
    wl_shm_buffer_begin_access(buffer);
    const QImage view(static_cast<const uchar*>(wl_shm_buffer_get_data(buffer)), width, height,
                      wl_shm_buffer_get_stride(buffer),
                      opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    QImage copy = view.copy();
    wl_shm_buffer_end_access(buffer);
    return copy;
}

// Tells a world that a buffer is no more; ends with the buffer.
struct Watch : wl_listener {
    World* world = nullptr;
};

void bufferGone(wl_listener* listener, void* data) {
    auto* const watch = static_cast<Watch*>(listener);
    auto* const gone = static_cast<wl_resource*>(data);
    watch->world->buffers.erase(gone);
    for (const auto& [id, each] : watch->world->surfaces) {
        if (each->buffer == gone) each->buffer = nullptr;
        if (each->pending.buffer == gone) each->pending.buffer = nullptr;
    }
    wl_list_remove(&listener->link);
    delete watch;
}

}  // namespace

void World::addSurfaces() {
    global<&wl_compositor_interface, 5>(*this, &kCompositor);
    if (options.globals.viewporter) global<&wp_viewporter_interface, 1>(*this, &kViewporter);
    if (options.globals.fractionalScale)
        global<&wp_fractional_scale_manager_v1_interface, 1>(*this, &kFractions);
}

void World::sendFraction(SurfaceState& surface) {
    const OutputState* const output = outputFor(surface);
    if (!surface.fraction || !output) return;
    wp_fractional_scale_v1_send_preferred_scale(
        surface.fraction, static_cast<std::uint32_t>(std::lround(output->asked.scale * 120.0)));
}

void World::takeBuffer(SurfaceState& surface) {
    wl_resource* const buffer = surface.pending.buffer;
    if (buffer) buffers.insert(buffer);
    if (surface.buffer && surface.buffer != buffer && options.releasesBuffers)
        wl_buffer_send_release(surface.buffer);
    surface.buffer = buffer;
    if (!buffer) return;
    if (!wl_resource_get_destroy_listener(buffer, bufferGone)) {
        auto* const watch = new Watch;
        watch->notify = bufferGone;
        watch->world = this;
        wl_resource_add_destroy_listener(buffer, watch);
    }
    surface.picture = copyOf(wl_shm_buffer_get(buffer));
}

void World::commit(SurfaceState& surface) {
    Pending pending = std::exchange(surface.pending, {});
    const bool hadBuffer = surface.buffer != nullptr;
    if (pending.input) surface.input = *pending.input;
    if (pending.opaque) surface.opaque = *pending.opaque;
    for (wl_resource* const callback : pending.frames)
        if (options.answersAllCallbacks || callback == pending.frames.front())
            surface.frames.push_back(callback);
    // A picture that was not presented yet never will be.
    std::vector<wl_resource*> unseen;
    if (options.reportsPresentation) unseen = std::exchange(surface.feedbacks, pending.feedbacks);
    for (wl_resource* const old : unseen) {
        wp_presentation_feedback_send_discarded(old);
        wl_resource_destroy(old);
    }
    Commit done{.attached = pending.attached,
                .damage = std::move(pending.damage),
                .surfaceDamage = pending.surfaceDamage,
                .frameCallback = !pending.frames.empty(),
                .feedback = !pending.feedbacks.empty(),
                .bufferScale = surface.bufferScale,
                .transform = surface.transform,
                .destination = surface.destination};
    if (done.frameCallback) ++pictures;
    if (pending.attached) {
        surface.pending.buffer = pending.buffer;
        const bool isShell = surface.layerSurface || surface.xdgSurface;
        if (pending.buffer && isShell && !surface.acknowledged)
            return wl_resource_post_error(surface.resource, 3, "a buffer before a configure");
        takeBuffer(surface);
        surface.pending.buffer = nullptr;
        if (pending.buffer) {
            done.buffer = wl_resource_get_id(pending.buffer);
            done.size = surface.picture.size();
        }
    }
    const QSize size = surface.picture.size();
    if (surface.buffer && surface.destination.isEmpty() &&
        (size.width() % surface.bufferScale != 0 || size.height() % surface.bufferScale != 0))
        return wl_resource_post_error(surface.resource, WL_SURFACE_ERROR_INVALID_SIZE, "scale");
    const QSize turned = surface.transform % 2 != 0 ? size.transposed() : size;
    surface.logical =
        surface.destination.isEmpty() ? turned / surface.bufferScale : surface.destination;
    surface.commits.push_back(std::move(done));
    if (std::ssize(surface.commits) > kMostCommits)
        surface.commits.erase(surface.commits.begin(), surface.commits.begin() + kMostCommits / 2);
    if (surface.role == Role::Cursor) return;
    const bool hasRole = surface.layerSurface || surface.toplevel;
    if (hasRole && !hadBuffer && !surface.buffer) firstCommit(surface);
    if (hasRole && !surface.mapped && surface.buffer) mapped(surface);
    if (surface.mapped && !surface.buffer) unmapped(surface);
    if (surface.mapped) findKeyFocus();
}

void World::sendPlace(SurfaceState& surface, bool enters) {
    const OutputState* const output = outputFor(surface);
    if (!output || !options.namesDisplays) return;
    const auto tell = enters ? wl_surface_send_enter : wl_surface_send_leave;
    for (wl_resource* const each : output->resources)
        if (wl_resource_get_client(each) == wl_resource_get_client(surface.resource))
            tell(surface.resource, each);
}

void World::showSurfaces(bool shows) {
    if (std::exchange(showsSurfaces, shows) == shows) return;
    for (const auto& [id, surface] : surfaces)
        if (surface->mapped) sendPlace(*surface, shows);
}

void World::mapped(SurfaceState& surface) {
    surface.mapped = true;
    if (showsSurfaces) sendPlace(surface, true);
    if (surface.toplevel) keyOrder.push_back(surface.id);
    findKeyFocus();
    pointerTo(pointerAt);
}

void World::unmapped(SurfaceState& surface) {
    surface.mapped = false;
    surface.acknowledged = false;
    std::erase(keyOrder, surface.id);
    if (pointerFocus == surface.id) pointerTo(pointerAt);
    findKeyFocus();
}

void World::forget(SurfaceState& surface) {
    surface.mapped = false;
    std::erase(keyOrder, surface.id);
    for (auto* const list :
         {&surface.frames, &surface.pending.frames, &surface.feedbacks, &surface.pending.feedbacks})
        for (wl_resource* const each : *list)
            link(each).id = 0;
    if (pointerFocus == surface.id) pointerFocus = 0;
    if (keyFocus == surface.id) keyFocus = 0;
    surfaces.erase(surface.id);
    pointerTo(pointerAt);
    findKeyFocus();
}

}  // namespace wltest
