// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/desktop/ScreenSaverView.h"
#include "platform/desktop/View.h"

namespace brixtel {

// A window's content: the saver's view, filling it, and what the host lays over
// it. Turns a key, a click or a real movement of the mouse into one call.
class HostView : public platform::View {
  public:
    explicit HostView(std::shared_ptr<platform::ScreenSaverView> saver);

    [[nodiscard]] const std::shared_ptr<platform::ScreenSaverView>& saver() const { return saver_; }

    // May be called more than once; without it input is swallowed.
    void onInvoer(std::function<void()> actie) { onInvoer_ = std::move(actie); }

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
    std::optional<QPointF> beginPunt_;  // on screen; where the mouse was first seen
};

}  // namespace brixtel
