// SPDX-License-Identifier: MIT
#include "tests/support/wayland/Compositor.h"

#include <linux/input-event-codes.h>
#include <poll.h>
#include <pthread.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <QTemporaryDir>
#include <future>
#include <mutex>
#include <thread>

#include "tests/support/wayland/World.h"

namespace wltest {

// Lives on its own; the world is touched by it alone.
class Compositor::Thread {
  public:
    Thread(const Options& options, const QString& socket)
        : wake_(eventfd(0, EFD_CLOEXEC)), world_(std::make_unique<World>(options)) {
        const int listening = wl_display_add_socket(world_->display, qPrintable(socket));
        if (listening != 0) qFatal("no socket for the compositor at %s", qPrintable(socket));
        thread_ = std::thread([this] { run(); });
        pthread_setname_np(thread_.native_handle(), "compositor");
    }

    ~Thread() {
        ask([this](World*) { ending_ = true; });
        thread_.join();
        ::close(wake_);
    }

    void ask(const std::function<void(World*)>& question) {
        std::promise<void> done;
        {
            const std::lock_guard lock(mutex_);
            question_ = &question;
            done_ = &done;
        }
        eventfd_write(wake_, 1);
        done.get_future().wait();
    }

    void setFrozen(bool frozen) {
        ask([&](World*) { frozen_ = frozen; });
    }

    void die() {
        ask([&](World*) { world_.reset(); });
    }

  private:
    void run() {
        while (!ending_) {
            const bool reads = world_ && !frozen_;
            pollfd waits[2] = {{.fd = wake_, .events = POLLIN, .revents = 0},
                               {.fd = reads ? wl_event_loop_get_fd(world_->loop) : -1,
                                .events = POLLIN,
                                .revents = 0}};
            poll(waits, 2, -1);
            if (reads) turn();
            if (waits[0].revents != 0) answer();
        }
        world_.reset();
    }

    void turn() {
        wl_event_loop_dispatch(world_->loop, 0);
        wl_display_flush_clients(world_->display);
    }

    void answer() {
        eventfd_t ignored = 0;
        eventfd_read(wake_, &ignored);
        const std::lock_guard lock(mutex_);
        if (world_ && !frozen_) turn();
        (*question_)(world_.get());
        if (world_ && !frozen_) wl_display_flush_clients(world_->display);
        done_->set_value();
    }

    const int wake_;
    std::unique_ptr<World> world_;
    bool frozen_ = false;
    bool ending_ = false;
    std::mutex mutex_;
    const std::function<void(World*)>* question_ = nullptr;
    std::promise<void>* done_ = nullptr;
    std::thread thread_;
};

namespace {

QString newSocket() {
    // Kept until the process ends: what a socket lies in must outlive it.
    static QTemporaryDir folder;
    static int number = 0;
    return folder.filePath(QStringLiteral("wayland-%1").arg(++number));
}

}  // namespace

Compositor::Compositor(const Options& options)
    : address_(newSocket()), thread_(std::make_unique<Thread>(options, address_)) {}

Compositor::~Compositor() = default;

void Compositor::ask(const std::function<void(World&)>& question) {
    thread_->ask([&](World* world) {
        if (world) question(*world);
    });
}

std::vector<Surface> Compositor::surfaces() {
    std::vector<Surface> all;
    ask([&](World& world) {
        for (const auto& [id, surface] : world.surfaces) {
            all.push_back(*surface);
            all.back().pendingFrames = static_cast<int>(surface->frames.size());
        }
    });
    return all;
}

std::vector<std::uint64_t> Compositor::ids() {
    std::vector<std::uint64_t> all;
    ask([&](World& world) {
        for (const auto& [id, surface] : world.surfaces)
            all.push_back(id);
    });
    return all;
}

std::vector<Surface> Compositor::shown() {
    std::vector<Surface> all = surfaces();
    std::erase_if(all, [](const Surface& surface) { return !surface.mapped; });
    return all;
}

int Compositor::count(const std::string& interface, const std::string& request) {
    int times = 0;
    ask([&](World& world) {
        const auto found = world.requests.find(interface + '.' + request);
        if (found != world.requests.end()) times = found->second;
    });
    return times;
}

int Compositor::pictures() {
    int number = 0;
    ask([&](World& world) { number = world.pictures; });
    return number;
}

int Compositor::clients() {
    int number = 0;
    ask([&](World& world) { number = wl_list_length(wl_display_get_client_list(world.display)); });
    return number;
}

int Compositor::buffers() {
    int number = 0;
    ask([&](World& world) { number = static_cast<int>(world.buffers.size()); });
    return number;
}

void Compositor::frame(double seconds, std::uint32_t interval) {
    ask([&](World& world) { world.frameAll(seconds, interval); });
}

void Compositor::addOutput(const Output& output) {
    ask([&](World& world) { world.addOutput(output); });
}

void Compositor::removeOutput(const std::string& name) {
    ask([&](World& world) { world.removeOutput(name); });
}

void Compositor::changeOutput(const Output& output) {
    ask([&](World& world) {
        OutputState& state = *world.outputs.at(output.name);
        state.asked = output;
        world.sendOutput(state);
    });
}

void Compositor::configure(std::uint64_t surface, QSize size) {
    ask([&](World& world) {
        if (SurfaceState* const state = world.find(surface)) world.configure(*state, size);
    });
}

void Compositor::setFullScreen(std::uint64_t surface, bool fullScreen) {
    ask([&](World& world) {
        SurfaceState* const state = world.find(surface);
        if (!state) return;
        state->fullScreen = fullScreen;
        const OutputState* const output = world.outputFor(*state);
        world.configure(*state, fullScreen && output ? output->logical() : QSize());
    });
}

void Compositor::close(std::uint64_t surface) {
    ask([&](World& world) {
        SurfaceState* const state = world.find(surface);
        if (!state) return;
        if (state->layerSurface) zwlr_layer_surface_v1_send_closed(state->layerSurface);
        if (state->toplevel) xdg_toplevel_send_close(state->toplevel);
    });
}

void Compositor::pointerTo(QPointF at) {
    ask([&](World& world) { world.pointerTo(at); });
}

void Compositor::button(std::uint32_t code, bool pressed) {
    ask([&](World& world) { world.button(code, pressed); });
}

std::uint64_t Compositor::click(QPointF at) {
    std::uint64_t got = 0;
    ask([&](World& world) {
        world.pointerTo(at);
        got = world.pointerFocus;
        world.button(BTN_LEFT, true);
        world.button(BTN_LEFT, false);
    });
    return got;
}

void Compositor::key(std::uint32_t code, bool pressed) {
    ask([&](World& world) { world.key(code, pressed); });
}

std::uint64_t Compositor::keyboardFocus() {
    std::uint64_t focus = 0;
    ask([&](World& world) { focus = world.keyFocus; });
    return focus;
}

void Compositor::giveKeyboard(std::uint64_t surface) {
    ask([&](World& world) { world.focusKeys(world.find(surface)); });
}

bool Compositor::cursorHidden() {
    bool hidden = false;
    ask([&](World& world) { hidden = world.pointerFocus != 0 && world.cursorHidden; });
    return hidden;
}

void Compositor::setSeat(bool keyboard, bool pointer) {
    ask([&](World& world) {
        world.capabilities = (keyboard ? std::uint32_t{WL_SEAT_CAPABILITY_KEYBOARD} : 0U) |
                             (pointer ? std::uint32_t{WL_SEAT_CAPABILITY_POINTER} : 0U);
        for (wl_resource* const seat : world.seats)
            wl_seat_send_capabilities(seat, world.capabilities);
    });
}

void Compositor::setGivesKeyboard(bool gives) {
    ask([&](World& world) {
        world.givesKeyboard = gives;
        world.findKeyFocus();
    });
}

void Compositor::setShowsSurfaces(bool shows) {
    ask([&](World& world) { world.showSurfaces(shows); });
}

void Compositor::setLocked(bool locked) {
    ask([&](World& world) {
        world.isLocked = locked;
        if (locked) world.focusKeys(nullptr);
        world.showSurfaces(!locked);
        if (!locked) world.findKeyFocus();
    });
}

void Compositor::setToplevelActive(const std::vector<bool>& active) {
    ask([&](World& world) {
        for (const bool each : active)
            world.sendToplevel(each);
    });
}

void Compositor::setFrames(Frames frames) {
    ask([&](World& world) { world.options.frames = frames; });
}

void Compositor::setReleasesBuffers(bool releases) {
    ask([&](World& world) { world.options.releasesBuffers = releases; });
}

void Compositor::setConfiguresByItself(bool configures) {
    ask([&](World& world) { world.options.configuresByItself = configures; });
}

void Compositor::freeze() {
    thread_->setFrozen(true);
}

void Compositor::thaw() {
    thread_->setFrozen(false);
}

void Compositor::postError() {
    ask([&](World& world) {
        wl_client* client = nullptr;
        wl_client_for_each(client, wl_display_get_client_list(world.display))
            wl_client_post_implementation_error(client, "as the test wants it");
    });
}

void Compositor::die() {
    thread_->die();
}

std::vector<std::uint32_t> Compositor::idleTimes() {
    std::vector<std::uint32_t> times;
    ask([&](World& world) {
        for (const auto& [each, milliseconds] : world.idles)
            times.push_back(milliseconds);
        for (const auto& [each, milliseconds] : world.kdeIdles)
            times.push_back(milliseconds);
    });
    return times;
}

void Compositor::setIdle(bool idle) {
    ask([&](World& world) {
        for (const auto& [each, milliseconds] : world.idles) {
            if (idle) ext_idle_notification_v1_send_idled(each);
            if (!idle) ext_idle_notification_v1_send_resumed(each);
        }
        for (const auto& [each, milliseconds] : world.kdeIdles) {
            if (idle) org_kde_kwin_idle_timeout_send_idle(each);
            if (!idle) org_kde_kwin_idle_timeout_send_resumed(each);
        }
    });
}

}  // namespace wltest
