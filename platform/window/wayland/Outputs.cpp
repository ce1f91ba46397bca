// SPDX-License-Identifier: MIT
#include "platform/window/wayland/Outputs.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::wayland {

namespace {

constexpr int kLeastRefresh = 1000;  // thousandths of a frame per second
constexpr double kScaleSteps = 120.0;

}  // namespace

const wl_output_listener Output::kListener = {
    .geometry =
        [](void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t,
           std::int32_t, const char*, const char*, std::int32_t transform) {
            auto& told = static_cast<Output*>(data)->told_;
            told.position = {x, y};
            told.transform = transform;
        },
    .mode =
        [](void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
           std::int32_t refresh) {
            if ((flags & WL_OUTPUT_MODE_CURRENT) == 0) return;
            auto& told = static_cast<Output*>(data)->told_;
            told.mode = {width, height};
            // A display that exists in memory only reports no rate.
            told.refresh = refresh >= kLeastRefresh ? refresh : 60'000;
        },
    .done = [](void* data, wl_output*) { static_cast<Output*>(data)->finish(); },
    .scale =
        [](void* data, wl_output*, std::int32_t scale) {
            static_cast<Output*>(data)->told_.scale = std::max(scale, 1);
        },
    .name =
        [](void* data, wl_output*, const char* name) {
            static_cast<Output*>(data)->told_.name = QString::fromUtf8(name);
        },
    .description = [](void*, wl_output*, const char*) {},
};

const zxdg_output_v1_listener Output::kXdgListener = {
    .logical_position =
        [](void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
            static_cast<Output*>(data)->told_.logicalPosition = {x, y};
        },
    .logical_size =
        [](void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
            static_cast<Output*>(data)->told_.logicalSize = {width, height};
        },
    .done =
        [](void* data, zxdg_output_v1* xdg) {
            // Later versions complete their properties with the output's own `done`.
            if (zxdg_output_v1_get_version(xdg) < 3) static_cast<Output*>(data)->finish();
        },
    .name =
        [](void* data, zxdg_output_v1*, const char* name) {
            static_cast<Output*>(data)->told_.name = QString::fromUtf8(name);
        },
    .description = [](void*, zxdg_output_v1*, const char*) {},
};

Output::Output(Proxy<wl_output> output, std::uint32_t globalName, std::function<void()> done)
    : output_(std::move(output)), globalName_(globalName), done_(std::move(done)) {
    // The name where neither protocol gives one.
    told_.name = QStringLiteral("output-%1").arg(globalName);
    wl_output_add_listener(get(), &kListener, this);
}

void Output::describeWith(zxdg_output_manager_v1* manager) {
    if (xdg_) return;
    xdg_.reset(zxdg_output_manager_v1_get_xdg_output(manager, get()));
    zxdg_output_v1_add_listener(xdg_.get(), &kXdgListener, this);
}

void Output::finish() {
    const bool first = !std::exchange(known_, true);
    if (std::exchange(now_, told_) != told_ || first) done_();
}

QSize Output::pixelSize() const {
    return now_.transform % 2 != 0 ? now_.mode.transposed() : now_.mode;
}

QRect Output::place() const {
    if (!now_.logicalSize.isEmpty()) return {now_.logicalPosition, now_.logicalSize};
    return {now_.position, pixelSize() / now_.scale};
}

double Output::scale() const {
    if (now_.logicalSize.isEmpty()) return now_.scale;
    // The size in points is a whole number, the scale one of 120ths.
    const double rough = static_cast<double>(pixelSize().width()) / now_.logicalSize.width();
    return std::max(std::round(rough * kScaleSteps), 1.0) / kScaleSteps;
}

void Outputs::add(Proxy<wl_output> output, std::uint32_t globalName) {
    all_.push_back(
        std::make_unique<Output>(std::move(output), globalName, [this] { observers_.tell(); }));
    if (manager_) all_.back()->describeWith(manager_.get());
}

void Outputs::remove(std::uint32_t globalName) {
    const auto gone =
        std::erase_if(all_, [=](const auto& output) { return output->globalName() == globalName; });
    if (gone != 0) observers_.tell();
}

void Outputs::setManager(Proxy<zxdg_output_manager_v1> manager) {
    manager_ = std::move(manager);
    for (const auto& output : all_)
        output->describeWith(manager_.get());
}

const Output* Outputs::main() const {
    const auto known = std::find_if(all_.begin(), all_.end(),
                                    [](const auto& output) { return output->isKnown(); });
    return known == all_.end() ? nullptr : known->get();
}

Screen Outputs::screenOf(const Output& output) const {
    const QRect zero = main() ? main()->place() : QRect();
    const QRect place = output.place();
    const QPoint low(place.left() - zero.left(),
                     (zero.top() + zero.height()) - (place.top() + place.height()));
    return {.name = output.name(),
            .frame = QRectF(low, place.size()),
            .scale = output.scale(),
            .refreshRate = output.refreshRate()};
}

std::vector<Screen> Outputs::screens() const {
    std::vector<Screen> screens;
    for (const auto& output : all_)
        if (output->isKnown()) screens.push_back(screenOf(*output));
    return screens;
}

const Output* Outputs::under(const QRectF& rect) const {
    const Output* best = main();
    double most = 0.0;
    for (const auto& output : all_) {
        if (!output->isKnown()) continue;
        const QRectF shared = screenOf(*output).frame & rect;
        const double area = shared.width() * shared.height();
        if (area <= most) continue;
        most = area;
        best = output.get();
    }
    return best;
}

const Output* Outputs::of(const wl_output* output) const {
    const auto found = std::find_if(all_.begin(), all_.end(),
                                    [=](const auto& each) { return each->get() == output; });
    return found == all_.end() ? nullptr : found->get();
}

const Output* Outputs::named(const QString& name) const {
    const auto found = std::find_if(all_.begin(), all_.end(), [&](const auto& output) {
        return output->isKnown() && output->name() == name;
    });
    return found == all_.end() ? nullptr : found->get();
}

}  // namespace platform::wayland
