// SPDX-License-Identifier: MIT
#include "platform/window/wayland/ShellSurface.h"

#include <algorithm>
#include <utility>

namespace platform::wayland {

namespace {

constexpr double kScaleSteps = 120.0;
constexpr double kPerNanosecond = 1.0e-9;  // seconds
// The reports of presentation that are waited for at once. A compositor may send none.
constexpr std::size_t kMostReports = 8;
constexpr const char* kProgram = "nl.groenlicht.brixtel";
constexpr std::uint32_t kAllEdges =
    ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP | ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM |
    ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT | ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT;
// The exclusive zone of a surface that covers panels too.
constexpr std::int32_t kOverAll = -1;

std::uint32_t layerOf(bool aboveAll) {
    return aboveAll ? ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY : ZWLR_LAYER_SHELL_V1_LAYER_TOP;
}

int sane(std::uint32_t length) {
    return static_cast<int>(std::min(length, std::uint32_t{1} << 20U));
}

}  // namespace

// The compositor's events, passed to the surface in the data pointer.
struct ShellSurface::Listeners {
    static ShellSurface& of(void* data) { return *static_cast<ShellSurface*>(data); }
    static const wl_surface_listener kSurface;
    static const wp_fractional_scale_v1_listener kFraction;
    static const zwlr_layer_surface_v1_listener kLayer;
    static const xdg_surface_listener kXdg;
    static const xdg_toplevel_listener kToplevel;
    static const wl_callback_listener kFrame;
    static const wp_presentation_feedback_listener kFeedback;

    static void drop(ShellSurface& surface, struct wp_presentation_feedback* feedback) {
        const std::lock_guard lock(surface.answers_);
        std::erase_if(surface.feedbacks_, [=](const auto& each) { return each.get() == feedback; });
    }
};

const wl_surface_listener ShellSurface::Listeners::kSurface = {
    .enter =
        [](void* data, wl_surface*, wl_output* output) {
            ShellSurface& self = of(data);
            const Output* const entered = self.connection_.outputs().of(output);
            if (!entered) return;
            const double before = self.scale();
            self.wholeScale_ = entered->wholeScale();
            if (self.scale() != before) self.owner_.surfaceRescaled();
            self.owner_.surfaceOnDisplay(true);
        },
    .leave = [](void* data, wl_surface*, wl_output*) { of(data).owner_.surfaceOnDisplay(false); },
};

const wp_fractional_scale_v1_listener ShellSurface::Listeners::kFraction = {
    .preferred_scale = [](void* data, wp_fractional_scale_v1*, std::uint32_t scale) {
        ShellSurface& self = of(data);
        const double wanted = std::max(scale, 1U) / kScaleSteps;
        if (std::exchange(self.wantedScale_, wanted) != wanted) self.owner_.surfaceRescaled();
    }};

const zwlr_layer_surface_v1_listener ShellSurface::Listeners::kLayer = {
    .configure =
        [](void* data, zwlr_layer_surface_v1* layer, std::uint32_t serial, std::uint32_t width,
           std::uint32_t height) {
            zwlr_layer_surface_v1_ack_configure(layer, serial);
            of(data).configured_ = true;
            of(data).owner_.surfaceConfigured({sane(width), sane(height)});
        },
    .closed = [](void* data, zwlr_layer_surface_v1*) { of(data).owner_.surfaceTaken(); },
};

const xdg_surface_listener ShellSurface::Listeners::kXdg = {
    .configure = [](void* data, xdg_surface* surface, std::uint32_t serial) {
        xdg_surface_ack_configure(surface, serial);
        of(data).configured_ = true;
        of(data).owner_.surfaceConfigured(of(data).asked_);
    }};

const xdg_toplevel_listener ShellSurface::Listeners::kToplevel = {
    .configure =
        [](void* data, xdg_toplevel*, std::int32_t width, std::int32_t height, wl_array*) {
            of(data).asked_ = {sane(static_cast<std::uint32_t>(std::max(width, 0))),
                               sane(static_cast<std::uint32_t>(std::max(height, 0)))};
        },
    .close = [](void* data, xdg_toplevel*) { of(data).owner_.closeAsked(); },
    .configure_bounds = [](void*, xdg_toplevel*, std::int32_t, std::int32_t) {},
    .wm_capabilities = [](void*, xdg_toplevel*, wl_array*) {},
};

const wl_callback_listener ShellSurface::Listeners::kFrame = {
    .done = [](void* data, wl_callback*, std::uint32_t) {
        {
            const std::lock_guard lock(of(data).answers_);
            of(data).callback_.reset();
        }
        of(data).owner_.frameDone();
    }};

const wp_presentation_feedback_listener ShellSurface::Listeners::kFeedback = {
    .sync_output = [](void*, struct wp_presentation_feedback*, wl_output*) {},
    .presented =
        [](void* data, struct wp_presentation_feedback* feedback, std::uint32_t high,
           std::uint32_t low, std::uint32_t nanoseconds, std::uint32_t interval, std::uint32_t,
           std::uint32_t, std::uint32_t) {
            drop(of(data), feedback);
            const auto seconds = (std::uint64_t{high} << 32U) | low;
            of(data).owner_.presented(static_cast<double>(seconds) + nanoseconds * kPerNanosecond,
                                      interval * kPerNanosecond);
        },
    .discarded = [](void* data,
                    struct wp_presentation_feedback* feedback) { drop(of(data), feedback); },
};

ShellSurface::ShellSurface(Connection& connection, const Options& options, InputTarget& target,
                           ShellSurfaceOwner& owner)
    : connection_(connection),
      owner_(owner),
      takesInput_(options.takesInput),
      aboveAll_(options.aboveAll) {
    surface_.reset(wl_compositor_create_surface(connection.compositor()));
    wl_surface_add_listener(surface_.get(), &Listeners::kSurface, this);
    connection.seat().adopt(surface_.get(), target);
    if (connection.viewporter())
        viewport_.reset(wp_viewporter_get_viewport(connection.viewporter(), surface_.get()));
    if (options.output) wholeScale_ = options.output->wholeScale();
    if (connection.fractions() && viewport_) {
        if (options.output) wantedScale_ = options.output->scale();
        fraction_.reset(wp_fractional_scale_manager_v1_get_fractional_scale(connection.fractions(),
                                                                            surface_.get()));
        wp_fractional_scale_v1_add_listener(fraction_.get(), &Listeners::kFraction, this);
    } else {
        viewport_.reset();
    }
    if (options.role == Role::Overlay) {
        makeOverlay(options);
    } else {
        makeWindow(options);
    }
    if (!takesInput_) applyInput();
    wl_surface_commit(surface_.get());
}

ShellSurface::~ShellSurface() {
    connection_.seat().release(surface_.get());
    // A role ends before its surface.
    callback_.reset();
    feedbacks_.clear();
    decoration_.reset();
    toplevel_.reset();
    xdg_.reset();
    layer_.reset();
    fraction_.reset();
    viewport_.reset();
}

void ShellSurface::makeOverlay(const Options& options) {
    layer_.reset(zwlr_layer_shell_v1_get_layer_surface(
        connection_.layers(), surface_.get(), options.output ? options.output->get() : nullptr,
        layerOf(options.aboveAll), kProgram));
    zwlr_layer_surface_v1_add_listener(layer_.get(), &Listeners::kLayer, this);
    zwlr_layer_surface_v1_set_anchor(layer_.get(), kAllEdges);
    zwlr_layer_surface_v1_set_exclusive_zone(layer_.get(), kOverAll);
    if (options.takesKeyboard)
        zwlr_layer_surface_v1_set_keyboard_interactivity(
            layer_.get(), ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE);
}

void ShellSurface::makeWindow(const Options& options) {
    xdg_.reset(xdg_wm_base_get_xdg_surface(connection_.windows(), surface_.get()));
    xdg_surface_add_listener(xdg_.get(), &Listeners::kXdg, this);
    toplevel_.reset(xdg_surface_get_toplevel(xdg_.get()));
    xdg_toplevel_add_listener(toplevel_.get(), &Listeners::kToplevel, this);
    setTitle(options.title);
    xdg_toplevel_set_app_id(toplevel_.get(), kProgram);
    if (options.role == Role::FullScreen)
        xdg_toplevel_set_fullscreen(toplevel_.get(),
                                    options.output ? options.output->get() : nullptr);
    if (!connection_.decorations()) return;
    decoration_.reset(zxdg_decoration_manager_v1_get_toplevel_decoration(connection_.decorations(),
                                                                         toplevel_.get()));
    zxdg_toplevel_decoration_v1_set_mode(decoration_.get(),
                                         ZXDG_TOPLEVEL_DECORATION_V1_MODE_SERVER_SIDE);
}

void ShellSurface::applyInput() {
    // A null region means the whole surface.
    const Proxy<wl_region> empty(
        takesInput_ ? nullptr : wl_compositor_create_region(connection_.compositor()));
    wl_surface_set_input_region(surface_.get(), empty.get());
}

void ShellSurface::setTitle(const QString& title) {
    if (toplevel_) xdg_toplevel_set_title(toplevel_.get(), title.toUtf8().constData());
}

void ShellSurface::setTakesInput(bool takes) {
    if (std::exchange(takesInput_, takes) == takes) return;
    applyInput();
    commit();
}

void ShellSurface::setTakesKeyboard(bool takes) {
    if (!layer_) return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(
        layer_.get(), takes ? ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE
                            : ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE);
    commit();
}

void ShellSurface::setAboveAll(bool above) {
    if (!layer_ || std::exchange(aboveAll_, above) == above) return;
    if (zwlr_layer_surface_v1_get_version(layer_.get()) <
        ZWLR_LAYER_SURFACE_V1_SET_LAYER_SINCE_VERSION)
        return;
    zwlr_layer_surface_v1_set_layer(layer_.get(), layerOf(above));
    commit();
}

double ShellSurface::scale() const {
    return viewport_ ? wantedScale_.value_or(wholeScale_) : wholeScale_;
}

void ShellSurface::setOpaque(QSize points, bool opaque) {
    const QSize wanted = opaque ? points : QSize();
    if (std::exchange(opaqueSize_, wanted) == wanted) return;
    const Proxy<wl_region> region(opaque ? wl_compositor_create_region(connection_.compositor())
                                         : nullptr);
    if (region) wl_region_add(region.get(), 0, 0, points.width(), points.height());
    wl_surface_set_opaque_region(surface_.get(), region.get());
}

bool ShellSurface::isWaiting() const {
    const std::lock_guard lock(answers_);
    return callback_ != nullptr;
}

void ShellSurface::commit() {
    // The other thread's commit may have taken the changes along, or just missed them.
    const std::unique_lock lock(commits_, std::try_to_lock);
    owesCommit_ = !lock;
    if (lock) wl_surface_commit(surface_.get());
}

void ShellSurface::settle() {
    if (owesCommit_) commit();
}

void ShellSurface::askForAnswers() {
    const std::lock_guard lock(answers_);
    callback_.reset(wl_surface_frame(surface_.get()));
    wl_callback_add_listener(callback_.get(), &Listeners::kFrame, this);
    if (!connection_.presentation() || feedbacks_.size() >= kMostReports) return;
    feedbacks_.emplace_back(wp_presentation_feedback(connection_.presentation(), surface_.get()));
    wp_presentation_feedback_add_listener(feedbacks_.back().get(), &Listeners::kFeedback, this);
}

void ShellSurface::prepare(const Picture& picture) {
    const QSize points = picture.points;
    if (viewport_) {
        if (std::exchange(destination_, points) != points)
            wp_viewport_set_destination(viewport_.get(), points.width(), points.height());
    } else if (std::exchange(bufferScale_, picture.wholeScale) != picture.wholeScale) {
        wl_surface_set_buffer_scale(surface_.get(), picture.wholeScale);
    }
    setOpaque(points, picture.opaque);
    askForAnswers();
}

bool ShellSurface::show(const Picture& picture, const std::function<bool()>& commit) {
    const std::lock_guard lock(commits_);
    prepare(picture);
    if (commit()) return true;
    const std::lock_guard answers(answers_);
    callback_.reset();
    return false;
}

void ShellSurface::show(wl_buffer* buffer, std::span<const QRect> boxes, const Picture& picture) {
    wl_surface* const surface = surface_.get();
    (void)show(picture, [&] {
        wl_surface_attach(surface, buffer, 0, 0);
        for (const QRect& box : boxes)
            wl_surface_damage_buffer(surface, box.x(), box.y(), box.width(), box.height());
        wl_surface_commit(surface);
        return true;
    });
}

}  // namespace platform::wayland
