// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QPointF>
#include <QRegion>
#include <QString>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// A Wayland compositor of a test's own: a thread with a socket, no screen and no
// input but what the test makes. Counts every request, and misbehaves as told.
//
// Every call waits until the compositor's thread has done it, with all that
// clients had sent before. One per test.
namespace wltest {

struct World;

// The globals that there are.
struct Globals {
    bool layerShell = true;
    bool xdgShell = true;
    bool viewporter = true;
    bool fractionalScale = true;
    bool presentation = true;
    bool decoration = true;
    bool xdgOutput = true;
    bool idle = true;
    bool kdeIdle = true;
    bool inputTaking = false;  // the protocol of lockers that are overlays
    bool sessionLock = false;  // that of lockers that are more
    bool toplevels = true;     // other programs' windows: one
};

struct Output {
    std::string name = "PROEF-1";
    QSize mode{640, 480};  // pixels, before the transform
    int refresh = 60'000;  // thousandths of a frame per second
    double scale = 1.0;
    int transform = 0;  // wl_output.transform
    QPoint at;          // logical
};

// When a frame callback is answered.
enum class Frames {
    ByHand,  // by frame()
    Always,  // some 60 times a second
};

struct Options {
    Globals globals;
    std::vector<Output> outputs{Output{}};
    Frames frames = Frames::ByHand;
    bool releasesBuffers = true;  // once another one is there
    // Whether each frame callback is answered; else only the first one of each commit.
    bool answersAllCallbacks = true;
    bool configuresByItself = true;
    bool namesDisplays = true;  // to the surfaces that are on one
    std::uint32_t presentationClock = 1;  // CLOCK_MONOTONIC
    bool reportsPresentation = true;
};

enum class Role { None, Layer, Toplevel, Cursor };

// One wl_surface.commit.
struct Commit {
    bool attached = false;  // a buffer, or none in its place
    std::uint32_t buffer = 0;
    QSize size;                  // of the buffer, pixels
    std::vector<QRect> damage;   // in pixels of the buffer
    bool surfaceDamage = false;  // some was told in the surface's coordinates
    bool frameCallback = false;
    bool feedback = false;
    int bufferScale = 1;
    int transform = 0;
    QSize destination;  // of the viewport; empty without
};

// A surface as the compositor knows it.
struct Surface {
    std::uint64_t id = 0;
    Role role = Role::None;
    bool mapped = false;
    std::string output;     // that it was asked for on
    std::string nameSpace;  // of a layer surface
    std::uint32_t layer = 0, anchor = 0, keyboard = 0;
    int exclusiveZone = 0;
    std::string title, appId;
    bool fullScreen = false;
    std::optional<QRegion> input;  // none is everywhere
    QRegion opaque;
    std::vector<Commit> commits;  // the last thousand or so
    int pendingFrames = 0;        // callbacks that wait
    QSize logical;                // as it is shown
    QImage picture;               // of the buffer, ARGB premultiplied or RGB
};

class Compositor {
  public:
    explicit Compositor(const Options& options = {});
    ~Compositor();
    Compositor(const Compositor&) = delete;
    Compositor& operator=(const Compositor&) = delete;

    // The value for WAYLAND_DISPLAY.
    [[nodiscard]] const QString& address() const { return address_; }

    // All that there are, in the order of their making.
    [[nodiscard]] std::vector<Surface> surfaces();
    // The surfaces' numbers alone.
    [[nodiscard]] std::vector<std::uint64_t> ids();
    // The surfaces that have a buffer and a role, but the cursor's.
    [[nodiscard]] std::vector<Surface> shown();
    // The number of such requests by clients, as in ("wl_surface", "commit").
    [[nodiscard]] int count(const std::string& interface, const std::string& request);
    // The commits so far that asked for an answer, as every picture does.
    [[nodiscard]] int pictures();
    [[nodiscard]] int clients();
    // The number of buffers that are alive.
    [[nodiscard]] int buffers();

    // Answers the frame callbacks of every surface that is shown, and says of
    // their pictures that they were presented at `seconds` of the clock, on a display with
    // `interval` nanoseconds between two pictures.
    void frame(double seconds = 0.0, std::uint32_t interval = 16'666'666);

    void addOutput(const Output& output);
    // Removes the output, and closes its layer surfaces.
    void removeOutput(const std::string& name);
    // A new mode, scale, transform or place for the output of that name.
    void changeOutput(const Output& output);

    // Tells a surface a size; logical. 0 × 0 leaves it to the client.
    void configure(std::uint64_t surface, QSize size);
    void setFullScreen(std::uint64_t surface, bool fullScreen);
    // Sends `closed` to a layer surface, `close` to a toplevel.
    void close(std::uint64_t surface);

    // Moves the pointer to a logical place; whoever takes input there has it.
    void pointerTo(QPointF at);
    void button(std::uint32_t code, bool pressed);
    // Left, at the pointer. The surface that got it; 0 for none.
    std::uint64_t click(QPointF at);
    // A key as in linux/input-event-codes.h, to the surface with the keyboard.
    void key(std::uint32_t code, bool pressed);
    // 0 for none.
    [[nodiscard]] std::uint64_t keyboardFocus();
    // Gives it to a surface, as a window manager does.
    void giveKeyboard(std::uint64_t surface);
    // Whether the pointer is over a surface that shows none.
    [[nodiscard]] bool cursorHidden();
    void setSeat(bool keyboard, bool pointer);

    // Whether overlays that want the keyboard get it, as under no lock.
    void setGivesKeyboard(bool gives);
    // Surfaces are on their displays or on none, as on displays that sleep; those that are on none
    // get no answers.
    void setShowsSurfaces(bool shows);
    // A lock has the keyboard and hides every surface. An overlay that asks for the keyboard
    // under the lock gets it, as on sway 1.10.
    void setLocked(bool locked);
    // The other program's window has the focus or has not, one after the other at once.
    void setToplevelActive(const std::vector<bool>& active);

    void setFrames(Frames frames);
    void setReleasesBuffers(bool releases);
    void setConfiguresByItself(bool configures);
    // Reads and sends no more until thawed.
    void freeze();
    void thaw();
    // A protocol error to every client.
    void postError();
    // Closes every connection and the socket, as in a crash.
    void die();
    // The times (milliseconds) of the idle watches that there are, in no order.
    [[nodiscard]] std::vector<std::uint32_t> idleTimes();
    // Idle notifications: the user has been away that long, or is back.
    void setIdle(bool idle);

  private:
    void ask(const std::function<void(World&)>& question);

    class Thread;
    QString address_;
    std::unique_ptr<Thread> thread_;
};

}  // namespace wltest
