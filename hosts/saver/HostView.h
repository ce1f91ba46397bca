// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "platform/view/ScreenSaverView.h"
#include "platform/view/View.h"
#include "platform/window/Screen.h"

namespace brixtel {

// A window's content: the saver's view, filling it, and what the host lays over
// it. Turns a key, a click or a real movement of the mouse into one call.
class HostView : public platform::View {
  public:
    // How the displays lie, for the movements of the mouse.
    using Indeling = std::function<std::vector<platform::Screen>()>;

    explicit HostView(std::shared_ptr<platform::ScreenSaverView> saver,
                      Indeling indeling = platform::Screen::all);

    [[nodiscard]] const std::shared_ptr<platform::ScreenSaverView>& saver() const { return saver_; }

    // May be called more than once; without it input is swallowed.
    void onInvoer(std::function<void()> actie) { onInvoer_ = std::move(actie); }
    // Called for the key "i", which is then no other input.
    void onInstellingen(std::function<void()> actie) { onInstellingen_ = std::move(actie); }

    // While it is used for something else, movements of the mouse are no input;
    // afterwards they count from where it then is.
    void setMuisTelt(bool telt);

    [[nodiscard]] bool isOpaque() const override { return true; }
    [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
    void keyDown(const platform::KeyEvent& event) override;
    void mouseDown(const platform::MouseEvent& event) override;
    void rightMouseDown(const platform::MouseEvent& event) override;
    void otherMouseDown(const platform::MouseEvent& event) override;
    void mouseMoved(const platform::MouseEvent& event) override;

  private:
    void invoer();

    std::shared_ptr<platform::ScreenSaverView> saver_;
    std::function<void()> onInvoer_;
    std::function<void()> onInstellingen_;
    bool muisTelt_ = true;
    const Indeling indeling_;
    std::optional<QPointF> beginPunt_;  // on screen; where the mouse was first seen
    std::vector<platform::Screen> beginIndeling_;
};

}  // namespace brixtel
