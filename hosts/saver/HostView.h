// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/time/MediaClock.h"
#include "platform/view/ScreenSaverView.h"
#include "platform/view/View.h"
#include "platform/window/Screen.h"
#include "platform/window/WindowSystem.h"

namespace brixtel {

// A window's content: the saver's view, which fills the window, and the host's views above
// it. Turns a key, a click or a real movement of the mouse into one call.
class HostView : public platform::View {
  public:
    // The arrangement of the displays: another arrangement starts a movement of the mouse anew.
    struct Indeling {
        std::vector<platform::Screen> schermen;
        std::uint64_t aangekondigd = 0;  // changes that the window system announced so far
        friend bool operator==(const Indeling&, const Indeling&) = default;
        // The arrangement that the window system and its screens tell at this moment.
        [[nodiscard]] static Indeling van(const platform::WindowSystem& systeem);
    };

    // The function tells the arrangement of this moment.
    HostView(std::shared_ptr<platform::ScreenSaverView> saver, std::function<Indeling()> indeling);

    [[nodiscard]] const std::shared_ptr<platform::ScreenSaverView>& saver() const { return saver_; }

    // Sets the action for input; it may be called more than once. Without one, input is
    // swallowed.
    void onInvoer(std::function<void()> actie) { onInvoer_ = std::move(actie); }
    // Sets the action for the key "i". The key then no longer counts as other input.
    void onInstellingen(std::function<void()> actie) { onInstellingen_ = std::move(actie); }

    // The user's commands to a window of its own; no other key or click ends such a window.
    struct EigenVenster {
        std::function<void()> volledig;  // F11, a double click: into full screen, or back
        std::function<void()> terug;     // Escape: out of full screen, else out of the program
        std::function<void()> sluit;     // Ctrl+Q
    };
    // The clock tells a double click from two clicks, and outlives the view.
    void inEigenVenster(platform::MediaClock& klok, EigenVenster daden);

    // Sets the action for each other size of the view, in points. The window is then in the
    // middle of its change.
    void onMaat(std::function<void(QSizeF)> actie) { onMaat_ = std::move(actie); }

    // Sets whether movements of the mouse count as input. Counting starts anew from the
    // mouse's present place.
    void setMuisTelt(bool telt);

    // A host may skip the content behind an opaque view.
    [[nodiscard]] bool isOpaque() const override { return true; }
    [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
    void setFrame(const QRectF& frame) override;
    void keyDown(const platform::KeyEvent& event) override;
    void mouseDown(const platform::MouseEvent& event) override;
    void rightMouseDown(const platform::MouseEvent& event) override;
    void otherMouseDown(const platform::MouseEvent& event) override;
    void mouseMoved(const platform::MouseEvent& event) override;

  private:
    void invoer();
    // Handles a key of the user's own window; false for any other key.
    bool eigenToets(const platform::KeyEvent& event);

    std::shared_ptr<platform::ScreenSaverView> saver_;
    std::function<void()> onInvoer_;
    std::function<void()> onInstellingen_;
    std::function<void(QSizeF)> onMaat_;
    EigenVenster eigen_;
    platform::MediaClock* klok_ = nullptr;  // with eigen_
    std::optional<double> laatsteKlik_;
    bool muisTelt_ = true;
    const std::function<Indeling()> indeling_;
    std::optional<QPointF> beginPunt_;  // the mouse's first place, on screen
    Indeling beginIndeling_;
};

}  // namespace brixtel
