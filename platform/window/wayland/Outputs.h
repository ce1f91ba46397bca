// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>
#include <memory>
#include <vector>

#include "platform/time/Observers.h"
#include "platform/window/Screen.h"
#include "platform/window/wayland/Protocols.h"

namespace platform::wayland {

// One display of a compositor. Owned by Outputs. Main thread.
class Output {
  public:
    Output(Proxy<wl_output> output, std::uint32_t globalName, std::function<void()> done);
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    void describeWith(zxdg_output_manager_v1* manager);

    [[nodiscard]] wl_output* get() const { return output_.get(); }
    [[nodiscard]] std::uint32_t globalName() const { return globalName_; }
    [[nodiscard]] const QString& name() const { return now_.name; }
    // The compositor's own scale, a whole number.
    [[nodiscard]] int wholeScale() const { return now_.scale; }
    // The display's place among the others, in points, y down.
    [[nodiscard]] QRect place() const;
    // The picture's size, after rotation.
    [[nodiscard]] QSize pixelSize() const;
    // Pixels per point.
    [[nodiscard]] double scale() const;
    // Frames per second.
    [[nodiscard]] double refreshRate() const { return now_.refresh / 1000.0; }
    // Whether all of the display's properties have arrived.
    [[nodiscard]] bool isKnown() const { return known_ && !now_.mode.isEmpty(); }

  private:
    // The properties as they arrive; complete at `done`.
    struct Description {
        QString name;
        QPoint position;
        QSize mode;  // pixels, before the transform
        int refresh = 60'000;
        int transform = 0;
        int scale = 1;
        QPoint logicalPosition;
        QSize logicalSize;  // empty where the compositor does not report it
        friend bool operator==(const Description&, const Description&) = default;
    };
    static const wl_output_listener kListener;
    static const zxdg_output_v1_listener kXdgListener;
    void finish();

    const Proxy<wl_output> output_;
    Proxy<zxdg_output_v1> xdg_;
    const std::uint32_t globalName_;
    const std::function<void()> done_;
    Description told_, now_;
    bool known_ = false;
};

// The present displays, in the compositor's order. The first display is the main screen; the
// points of all displays are measured from it. Owned by the connection. Main thread.
class Outputs {
  public:
    void add(Proxy<wl_output> output, std::uint32_t globalName);
    void remove(std::uint32_t globalName);
    void setManager(Proxy<zxdg_output_manager_v1> manager);

    [[nodiscard]] std::vector<Screen> screens() const;
    // The display with most of a rectangle, in the space of Screen::frame. The main display
    // for a rectangle that lies on none; nullptr without displays.
    [[nodiscard]] const Output* under(const QRectF& rect) const;
    // The display of that name or object; nullptr where it is gone.
    [[nodiscard]] const Output* of(const wl_output* output) const;
    [[nodiscard]] const Output* named(const QString& name) const;
    [[nodiscard]] Screen screenOf(const Output& output) const;

    // Calls the action once for each complete change.
    [[nodiscard]] Observation observe(std::function<void()> action) {
        return observers_.add(std::move(action));
    }

  private:
    [[nodiscard]] const Output* main() const;

    Proxy<zxdg_output_manager_v1> manager_;
    std::vector<std::unique_ptr<Output>> all_;
    Observers<> observers_;
};

}  // namespace platform::wayland
