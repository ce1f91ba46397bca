// SPDX-License-Identifier: MIT
// The state that a Compositor's thread works on; private to tests/support/wayland.
#pragma once

#include <deque>
#include <list>
#include <map>
#include <set>

#include "platform/time/MediaClock.h"
#include "tests/support/wayland/Compositor.h"
#include "tests/support/wayland/Protocols.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace wltest {

// The user data of every resource: the object may be gone before it.
struct Link {
    World* world = nullptr;
    std::uint64_t id = 0;
};

[[nodiscard]] inline Link& link(wl_resource* resource) {
    return *static_cast<Link*>(wl_resource_get_user_data(resource));
}

struct Pending {
    bool attached = false;
    wl_resource* buffer = nullptr;
    std::vector<QRect> damage;
    bool surfaceDamage = false;
    std::vector<wl_resource*> frames;
    std::vector<wl_resource*> feedbacks;
    std::optional<std::optional<QRegion>> input;
    std::optional<QRegion> opaque;
};

struct SurfaceState : Surface {
    wl_resource* resource = nullptr;
    wl_resource* layerSurface = nullptr;
    wl_resource* xdgSurface = nullptr;
    wl_resource* toplevel = nullptr;
    wl_resource* decoration = nullptr;
    wl_resource* fraction = nullptr;
    wl_resource* viewport = nullptr;
    Pending pending;
    int bufferScale = 1;
    int transform = 0;
    QSize destination;
    wl_resource* buffer = nullptr;
    std::vector<wl_resource*> frames;
    std::vector<wl_resource*> feedbacks;
    std::set<std::uint32_t> serials;  // of configures that were not acknowledged
    bool acknowledged = false;
    QSize asked;       // by layer_surface.set_size
    QSize configured;  // told last
};

struct OutputState {
    World* world = nullptr;
    Output asked;
    wl_global* global = nullptr;
    std::vector<wl_resource*> resources;
    std::vector<wl_resource*> xdgResources;
    [[nodiscard]] QSize logical() const;
    [[nodiscard]] QRect place() const { return {asked.at, logical()}; }
};

struct World {
    explicit World(const Options& options);
    ~World();

    Options options;
    platform::SystemClock clock;  // tells when pictures were presented
    wl_display* display = nullptr;
    wl_protocol_logger* logger = nullptr;
    wl_event_loop* loop = nullptr;
    wl_event_source* timer = nullptr;
    std::uint64_t lastId = 0;
    std::map<std::uint64_t, std::unique_ptr<SurfaceState>> surfaces;
    std::map<std::uint64_t, QRegion> regions;
    std::map<std::string, std::unique_ptr<OutputState>> outputs;
    std::vector<std::unique_ptr<OutputState>> goneOutputs;
    std::map<std::string, int> requests;
    int pictures = 0;  // commits that ask for the next frame
    std::set<wl_resource*> buffers;
    std::vector<wl_resource*> seats, keyboards, pointers, toplevels;
    std::map<wl_resource*, std::uint32_t> idles, kdeIdles;  // with their milliseconds
    wl_global* seatGlobal = nullptr;
    std::uint32_t capabilities = WL_SEAT_CAPABILITY_KEYBOARD | WL_SEAT_CAPABILITY_POINTER;
    std::uint64_t pointerFocus = 0, keyFocus = 0;
    std::vector<std::uint64_t> keyOrder;  // toplevels, the last one shown last
    QPointF pointerAt;
    bool givesKeyboard = true;
    bool isLocked = false, showsSurfaces = true;
    bool cursorHidden = false;
    std::uint64_t cursorSurface = 0;
    xkb_context* xkbContext = nullptr;
    xkb_keymap* keymap = nullptr;
    xkb_state* keyState = nullptr;
    std::uint32_t milliseconds = 0;

    [[nodiscard]] SurfaceState* find(std::uint64_t id);
    [[nodiscard]] SurfaceState* surfaceOf(wl_resource* resource) { return find(link(resource).id); }
    [[nodiscard]] OutputState* outputOf(wl_resource* resource);
    // The output that a surface is on, or would be.
    [[nodiscard]] OutputState* outputFor(const SurfaceState& surface);
    [[nodiscard]] QRect placeOf(const SurfaceState& surface);
    std::uint32_t nextSerial() { return wl_display_next_serial(display); }

    // A resource with a link as its data.
    wl_resource* make(wl_client* client, const wl_interface* interface, int version,
                      std::uint32_t id, const void* implementation, std::uint64_t object,
                      wl_resource_destroy_func_t destroyed = nullptr);

    void addSurfaces();  // wl_compositor, viewporter, fractional scale
    void addPresentation();
    void addOutputs();
    void addOutput(const Output& output);
    void removeOutput(const std::string& name);
    void sendOutput(OutputState& output);
    void sendFraction(SurfaceState& surface);
    void addSeat();
    void addLayerShell();
    void addXdgShell();
    void addDecoration();
    void addIdle();
    void addLocks();
    void sendToplevel(bool active);
    void addKdeIdle();

    void commit(SurfaceState& surface);
    void firstCommit(SurfaceState& surface);
    void takeBuffer(SurfaceState& surface);
    void configure(SurfaceState& surface, QSize size);
    void mapped(SurfaceState& surface);
    void unmapped(SurfaceState& surface);
    void showSurfaces(bool shows);
    // Tells a surface that it came to its display, or left it.
    void sendPlace(SurfaceState& surface, bool enters);
    void forget(SurfaceState& surface);
    void frame(SurfaceState& surface, double seconds, std::uint32_t interval);
    void frameAll(double seconds, std::uint32_t interval = 16'666'666);

    [[nodiscard]] SurfaceState* hit(QPointF at);
    void pointerTo(QPointF at);
    void button(std::uint32_t code, bool pressed);
    void key(std::uint32_t code, bool pressed);
    void focusPointer(SurfaceState* surface);
    void focusKeys(SurfaceState* surface);
    // Who has the keyboard by its wishes and what is shown.
    void findKeyFocus();
    void sendModifiers();
};

// Takes a resource out of a list that it stands in.
inline void drop(std::vector<wl_resource*>& list, wl_resource* resource) {
    std::erase(list, resource);
}

// The handler of a request that has nothing but to end its resource.
inline void destroyResource(wl_client*, wl_resource* resource) {
    wl_resource_destroy(resource);
}

}  // namespace wltest
