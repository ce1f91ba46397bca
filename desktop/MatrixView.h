// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <functional>
#include <memory>
#include <optional>

#include "platform/time/MediaClock.h"
#include "platform/view/View.h"
#include "platform/window/Workspace.h"

namespace brixtel {

// The content of a covering window: turns a user's deliberate input into a wish to end the
// effect. A key or the left or right mouse button counts at once. The mouse counts once it
// has moved more than 50 points from its place after the first 0.9 seconds. Other buttons
// and the wheel do not count. Input goes no further. Main thread only; clock and workspace
// must outlive the view.
class MatrixView : public platform::View {
  public:
    MatrixView(const QRectF& frame, platform::MediaClock& klok, platform::Workspace& werkruimte);

    // Called for every such wish, possibly more than once. Without an action, input is
    // swallowed.
    std::function<void()> onSluit;

    // Time of construction, in seconds of the clock.
    [[nodiscard]] double begin() const { return begin_; }
    // The place from which the mouse's movement is measured, in screen coordinates; none
    // before 0.9 s.
    [[nodiscard]] std::optional<QPointF> beginPunt() const { return beginPunt_; }
    [[nodiscard]] const std::shared_ptr<platform::TrackingArea>& volgGebied() const {
        return volgGebied_;
    }

    [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
    void updateTrackingAreas() override;
    // A modifier such as Shift alone is no key press.
    void keyDown(const platform::KeyEvent& toets) override;
    void mouseDown(const platform::MouseEvent& muis) override;
    void rightMouseDown(const platform::MouseEvent& muis) override;
    void otherMouseDown(const platform::MouseEvent& muis) override;
    void mouseMoved(const platform::MouseEvent& muis) override;

  private:
    void sluit();

    platform::MediaClock& klok_;
    platform::Workspace& werkruimte_;
    const double begin_;
    std::optional<QPointF> beginPunt_;
    std::shared_ptr<platform::TrackingArea> volgGebied_;
};

}  // namespace brixtel
