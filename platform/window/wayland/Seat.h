// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <map>
#include <memory>
#include <optional>

#include "platform/time/Timer.h"
#include "platform/window/wayland/Keys.h"
#include "platform/window/wayland/Protocols.h"

struct wl_cursor_theme;

namespace platform::wayland {

// Receives the input of a surface. Main thread; a call may end the target.
class InputTarget {
  public:
    enum class Button { Left, Right, Other };

    virtual void keyPressed(const KeyEvent& event) = 0;
    // In the surface's points, y down.
    virtual void pointerMoved(QPointF at) = 0;
    virtual void buttonPressed(Button button, QPointF at) = 0;
    // The target got or lost the keyboard, or the seat did.
    virtual void keyboardChanged() = 0;
    // Whether the pointer is hidden over the surface.
    [[nodiscard]] virtual bool hidesCursor() const = 0;

  protected:
    ~InputTarget() = default;
};

// Keyboard, pointer and touch screen: their targets and their input. Repeats held keys by the
// clock, at the compositor's rate. One seat: the first of a compositor with several. Owned by
// the connection. Main thread.
class Seat {
  public:
    explicit Seat(MediaClock& clock);
    ~Seat();
    Seat(const Seat&) = delete;
    Seat& operator=(const Seat&) = delete;

    // The compositor and the shared memory, which make cursors, outlive the seat's use.
    void bind(Proxy<wl_seat> seat, std::uint32_t globalName);
    void remove(std::uint32_t globalName);
    void setCursorSource(wl_compositor* compositor, wl_shm* shm);

    [[nodiscard]] bool hasKeyboard(const InputTarget& target) const {
        return keyTarget_ == &target;
    }
    // The target whose surface has the keyboard; nullptr where no surface of ours has it.
    [[nodiscard]] const InputTarget* keyTarget() const { return keyTarget_; }
    // Whether there is a keyboard to have.
    [[nodiscard]] bool hasAnyKeyboard() const { return keyboard_ != nullptr; }
    [[nodiscard]] const InputTarget* pointerTarget() const { return pointerTarget_; }
    [[nodiscard]] QPointF pointerPlace() const { return at_; }
    // Sends input on the surface to the target, until release().
    void adopt(wl_surface* surface, InputTarget& target) { targets_[surface] = &target; }
    void release(wl_surface* surface);
    // Reports a change of the target's hidesCursor().
    void cursorChanged(const InputTarget& target);
    [[nodiscard]] wl_seat* get() const { return seat_.get(); }

  private:
    struct Listeners;
    friend struct Listeners;
    struct CursorThemeEnd {
        void operator()(wl_cursor_theme* theme) const;
    };
    // Null for a surface that has ended, and for the cursor's surface.
    [[nodiscard]] InputTarget* targetOf(wl_surface* surface) const;
    void setCapabilities(std::uint32_t capabilities);
    void setKeyTarget(InputTarget* target);
    void tellOfKeyboard();
    void key(std::uint32_t key, bool pressed);
    void repeatEnds();
    void showCursor();

    MediaClock& clock_;
    Proxy<wl_seat> seat_;
    std::uint32_t globalName_ = 0;
    Proxy<wl_keyboard> keyboard_;
    Proxy<wl_pointer> pointer_;
    Proxy<wl_touch> touch_;
    wl_compositor* compositor_ = nullptr;
    wl_shm* shm_ = nullptr;

    std::map<wl_surface*, InputTarget*> targets_;
    Keys keys_;
    InputTarget* keyTarget_ = nullptr;
    double repeatDelay_ = 0.6;      // seconds
    double repeatInterval_ = 0.04;  // seconds; 0 for no repeats
    std::optional<std::uint32_t> held_;
    Timer repeat_;

    InputTarget* pointerTarget_ = nullptr;
    QPointF at_;
    std::uint32_t entered_ = 0;  // serial
    std::unique_ptr<wl_cursor_theme, CursorThemeEnd> theme_;
    Proxy<wl_surface> cursor_;
};

}  // namespace platform::wayland
