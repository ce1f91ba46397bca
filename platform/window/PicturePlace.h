// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>
#include <QSizeF>
#include <functional>
#include <memory>
#include <optional>

#include "platform/window/NativeWindow.h"
#include "platform/window/Screen.h"

namespace platform {

// A place in another toolkit's scene, such as an item of Qt Quick, that shows a window's
// pictures. The owner of the place gives its measures, shows each new picture, and says when
// the picture was shown; the next one is drawn only then. No window of the window system
// belongs to the place, so that a place works alike on every system.
//
// Owned by its maker; outlives the window that it is given to, which is one at a time. Main
// thread, but for read().
class PicturePlace {
  public:
    // A plain value.
    struct Measures {
        QSizeF size;                   // points
        double scale = 1.0;            // pixels per point, > 0
        std::optional<Screen> screen;  // the screen with most of the place
        bool isSeen = true;            // whether a picture could be seen

        friend bool operator==(const Measures&, const Measures&) = default;
    };

    PicturePlace();
    ~PicturePlace();
    PicturePlace(const PicturePlace&) = delete;
    PicturePlace& operator=(const PicturePlace&) = delete;

    // Nothing is drawn before the first measures.
    void setMeasures(const Measures& measures);
    [[nodiscard]] const Measures& measures() const { return measures_; }

    // Called in a turn of the event loop once there is a new picture.
    void onPicture(std::function<void()> action) { action_ = std::move(action); }
    // The owner has shown the newest picture.
    void wasShown();

    // Calls `use` with the newest picture, in pixels; a null image before the first. No
    // picture is painted meanwhile. Any thread.
    void read(const std::function<void(const QImage& picture)>& use) const;

    // The window system's part of a window in this place. The delegate outlives it.
    [[nodiscard]] std::unique_ptr<NativeWindow> makeWindow(NativeWindowDelegate& delegate);

  private:
    class Picture;
    class PlaceSurface;
    class PlaceWindow;

    const std::shared_ptr<Picture> picture_;
    Measures measures_{.isSeen = false};
    std::function<void()> action_;
    PlaceWindow* window_ = nullptr;
};

}  // namespace platform
