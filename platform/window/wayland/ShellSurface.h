// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>
#include <QString>
#include <atomic>
#include <functional>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "platform/window/wayland/Connection.h"

namespace platform::wayland {

// Owns a shell surface and receives its events. Main thread; a call may end the surface.
class ShellSurfaceOwner {
  public:
    // A size in points; each dimension is 0 where the compositor leaves it open.
    virtual void surfaceConfigured(QSize size) = 0;
    // The compositor asks for another number of pixels per point.
    virtual void surfaceRescaled() = 0;
    // The surface came to a display, or left it while it stays there.
    virtual void surfaceOnDisplay(bool /*isThere*/) {}
    // The compositor closed the surface, which no longer shows anything.
    virtual void surfaceTaken() = 0;
    // The user asks to close the window.
    virtual void closeAsked() = 0;
    // The compositor accepts the next picture.
    virtual void frameDone() = 0;
    // A picture was shown to the user, as in NativeWindowDelegate.
    virtual void presented(double time, double interval) = 0;

  protected:
    ~ShellSurfaceOwner() = default;
};

// A surface with a role: an overlay over a whole display, or a window. Unmapped until its
// first picture. The native window owns it, from showing to hiding: a window that is shown
// again has a new surface, with every setting made anew. Main thread, but for what is told of
// show().
class ShellSurface {
  public:
    enum class Role {
        Overlay,     // above everything on one display; needs the layer shell
        FullScreen,  // a window that fills one display
        Window,
    };
    struct Options {
        Role role = Role::Window;
        const Output* output = nullptr;  // except for a Window; nullptr: the compositor's choice
        bool takesKeyboard = false;      // an Overlay gets all keys while it exists
        bool aboveAll = true;            // of an overlay; see setAboveAll()
        bool takesInput = true;          // false: clicks go to the windows below
        QString title;
    };

    // Asks the compositor for a first size at once.
    ShellSurface(Connection& connection, const Options& options, InputTarget& target,
                 ShellSurfaceOwner& owner);
    ~ShellSurface();
    ShellSurface(const ShellSurface&) = delete;
    ShellSurface& operator=(const ShellSurface&) = delete;

    // Names a window; an overlay has no name.
    void setTitle(const QString& title);
    void setTakesInput(bool takes);
    // Sets whether an overlay gets all keys.
    void setTakesKeyboard(bool takes);
    // For an overlay: above all other layers, or under those that are.
    void setAboveAll(bool above);

    // Whether the surface accepts pictures.
    [[nodiscard]] bool isConfigured() const { return configured_; }
    // The pixels per point that the compositor asks for.
    [[nodiscard]] double scale() const;
    // Whether fractions of the scale count. Otherwise a picture has a whole number of pixels
    // per point.
    [[nodiscard]] bool isStretched() const { return viewport_ != nullptr; }
    // Whether the compositor has not yet answered for the last picture.
    [[nodiscard]] bool isWaiting() const;

    // How a picture is shown.
    struct Picture {
        QSize points;
        int wholeScale = 1;   // pixels per point where nothing is stretched
        bool opaque = false;  // hides the windows below
    };
    [[nodiscard]] Picture pictureOf(QSize points) const {
        return {.points = points, .wholeScale = wholeScale_};
    }

    // Shows the buffer; `boxes` (its pixels) are new.
    void show(wl_buffer* buffer, std::span<const QRect> boxes, const Picture& picture);
    // Has `commit` commit a picture; false as `commit` itself, and then nothing is shown. On
    // the thread that draws the picture, which the caller keeps from outliving the surface. One
    // thread at a time.
    bool show(const Picture& picture, const std::function<bool()>& commit);
    // Commits changes that had to wait for another thread's show().
    void settle();
    [[nodiscard]] wl_surface* surface() const { return surface_.get(); }

  private:
    struct Listeners;
    friend struct Listeners;
    void makeOverlay(const Options& options);
    void makeWindow(const Options& options);
    void applyInput();
    void commit();
    void askForAnswers();
    void prepare(const Picture& picture);
    void setOpaque(QSize points, bool opaque);

    Connection& connection_;
    ShellSurfaceOwner& owner_;
    Proxy<wl_surface> surface_;
    Proxy<wp_viewport> viewport_;
    Proxy<wp_fractional_scale_v1> fraction_;
    Proxy<zwlr_layer_surface_v1> layer_;
    Proxy<xdg_surface> xdg_;
    Proxy<xdg_toplevel> toplevel_;
    Proxy<zxdg_toplevel_decoration_v1> decoration_;
    mutable std::mutex answers_;  // guards the next two
    Proxy<wl_callback> callback_;
    std::vector<Proxy<struct wp_presentation_feedback>> feedbacks_;
    // Held from the attaching of a picture to its commit, which another commit would tear.
    std::mutex commits_;
    std::atomic<bool> owesCommit_{false};
    bool takesInput_;
    bool aboveAll_;
    bool configured_ = false;
    QSize asked_;                        // a toplevel's size, until its surface is configured
    std::optional<double> wantedScale_;  // the compositor's scale for this surface
    int wholeScale_ = 1;                 // the scale of the surface's display
    // The state that the last picture was shown with.
    QSize destination_;
    int bufferScale_ = 1;
    QSize opaqueSize_;
};

}  // namespace platform::wayland
