// SPDX-License-Identifier: MIT
// The clients' side of every protocol that the program speaks; private to
// platform/window/wayland.
#pragma once

#include <wayland-client.h>

#include "ext-idle-notify-v1-client.h"
#include "fractional-scale-v1-client.h"
#include "kde-idle-client.h"
#include "presentation-time-client.h"
#include "viewporter-client.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client.h"
#include "wlr-layer-shell-unstable-v1-client.h"
#include "xdg-decoration-unstable-v1-client.h"
#include "xdg-output-unstable-v1-client.h"
#include "xdg-shell-client.h"

#include <memory>

namespace platform::wayland {

// Ends an object on both sides of the connection.
struct ProxyEnd {
    void operator()(wl_registry* p) const { wl_registry_destroy(p); }
    void operator()(wl_compositor* p) const { wl_compositor_destroy(p); }
    void operator()(wl_shm* p) const { wl_shm_destroy(p); }
    void operator()(wl_shm_pool* p) const { wl_shm_pool_destroy(p); }
    void operator()(wl_buffer* p) const { wl_buffer_destroy(p); }
    void operator()(wl_surface* p) const { wl_surface_destroy(p); }
    void operator()(wl_region* p) const { wl_region_destroy(p); }
    void operator()(wl_callback* p) const { wl_callback_destroy(p); }
    void operator()(wl_output* p) const;
    void operator()(wl_seat* p) const;
    void operator()(wl_keyboard* p) const;
    void operator()(wl_pointer* p) const;
    void operator()(wl_touch* p) const;
    void operator()(zxdg_output_manager_v1* p) const { zxdg_output_manager_v1_destroy(p); }
    void operator()(zxdg_output_v1* p) const { zxdg_output_v1_destroy(p); }
    void operator()(wp_viewporter* p) const { wp_viewporter_destroy(p); }
    void operator()(wp_viewport* p) const { wp_viewport_destroy(p); }
    void operator()(wp_presentation* p) const { wp_presentation_destroy(p); }
    void operator()(struct wp_presentation_feedback* p) const {
        wp_presentation_feedback_destroy(p);
    }
    void operator()(wp_fractional_scale_manager_v1* p) const {
        wp_fractional_scale_manager_v1_destroy(p);
    }
    void operator()(wp_fractional_scale_v1* p) const { wp_fractional_scale_v1_destroy(p); }
    void operator()(xdg_wm_base* p) const { xdg_wm_base_destroy(p); }
    void operator()(xdg_surface* p) const { xdg_surface_destroy(p); }
    void operator()(xdg_toplevel* p) const { xdg_toplevel_destroy(p); }
    void operator()(zxdg_decoration_manager_v1* p) const { zxdg_decoration_manager_v1_destroy(p); }
    void operator()(zxdg_toplevel_decoration_v1* p) const {
        zxdg_toplevel_decoration_v1_destroy(p);
    }
    void operator()(zwlr_foreign_toplevel_manager_v1* p) const {
        zwlr_foreign_toplevel_manager_v1_destroy(p);
    }
    void operator()(zwlr_foreign_toplevel_handle_v1* p) const {
        zwlr_foreign_toplevel_handle_v1_destroy(p);
    }
    void operator()(zwlr_layer_shell_v1* p) const;
    void operator()(zwlr_layer_surface_v1* p) const { zwlr_layer_surface_v1_destroy(p); }
    void operator()(ext_idle_notifier_v1* p) const { ext_idle_notifier_v1_destroy(p); }
    void operator()(ext_idle_notification_v1* p) const { ext_idle_notification_v1_destroy(p); }
    void operator()(org_kde_kwin_idle* p) const { org_kde_kwin_idle_destroy(p); }
    void operator()(org_kde_kwin_idle_timeout* p) const { org_kde_kwin_idle_timeout_release(p); }
};
template <typename T>
using Proxy = std::unique_ptr<T, ProxyEnd>;

}  // namespace platform::wayland
