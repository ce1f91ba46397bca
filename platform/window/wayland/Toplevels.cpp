// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Toplevels.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace platform::wayland {

struct Toplevels::Toplevel {
    Toplevels& owner;
    Proxy<zwlr_foreign_toplevel_handle_v1> handle;
    bool active = false;
    bool told = false;  // active, until the compositor says that all is told
};

// The compositor's events, passed to the window or to all windows in the data pointer.
struct Toplevels::Listeners {
    static Toplevel& one(void* data) { return *static_cast<Toplevel*>(data); }
    static bool isActive(const wl_array& states) {
        const auto* const first = static_cast<const std::uint32_t*>(states.data);
        const auto* const last = first + states.size / sizeof *first;
        return std::find(first, last, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != last;
    }
    static const zwlr_foreign_toplevel_manager_v1_listener kManager;
    static const zwlr_foreign_toplevel_handle_v1_listener kHandle;
};

const zwlr_foreign_toplevel_manager_v1_listener Toplevels::Listeners::kManager = {
    .toplevel =
        [](void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle) {
            auto& self = *static_cast<Toplevels*>(data);
            self.all_.push_back(std::make_unique<Toplevel>(
                Toplevel{.owner = self, .handle = Proxy<zwlr_foreign_toplevel_handle_v1>(handle)}));
            zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kHandle, self.all_.back().get());
        },
    .finished = [](void*, zwlr_foreign_toplevel_manager_v1*) {},
};

const zwlr_foreign_toplevel_handle_v1_listener Toplevels::Listeners::kHandle = {
    .title = [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},
    .app_id = [](void*, zwlr_foreign_toplevel_handle_v1*, const char*) {},
    .output_enter = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .output_leave = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .state = [](void* data, zwlr_foreign_toplevel_handle_v1*,
                wl_array* states) { one(data).told = isActive(*states); },
    .done =
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
            Toplevel& self = one(data);
            self.active = self.told;
            self.owner.changed();
        },
    .closed =
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
            Toplevels& owner = one(data).owner;
            std::erase_if(owner.all_, [=](const auto& each) { return each.get() == data; });
            owner.changed();
        },
    .parent = [](void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {},
};

Toplevels::Toplevels() = default;

Toplevels::~Toplevels() = default;

void Toplevels::bind(Proxy<zwlr_foreign_toplevel_manager_v1> manager) {
    manager_ = std::move(manager);
    zwlr_foreign_toplevel_manager_v1_add_listener(manager_.get(), &Listeners::kManager, this);
}

Observation Toplevels::observe(std::function<void()> action) {
    return observers_.add(std::move(action));
}

void Toplevels::changed() {
    if (std::exchange(waiting_, true)) return;
    QMetaObject::invokeMethod(
        &context_, [this] { settle(); }, Qt::QueuedConnection);
}

void Toplevels::settle() {
    waiting_ = false;
    const bool any =
        std::any_of(all_.begin(), all_.end(), [](const auto& each) { return each->active; });
    if (std::exchange(anyActive_, any) != any) observers_.tell();
}

}  // namespace platform::wayland
