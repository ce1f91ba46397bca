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

// The content of a covering window: turns what a user does on purpose into a wish
// to end it. A key or the left or right mouse button counts at once; the mouse
// once it has moved more than 50 points from where it was after the first 0.9
// seconds. Other buttons and the wheel do not count. Nothing is passed on. Main
// thread only; clock and workspace must outlive it.
class MatrixView : public platform::View {
  public:
    MatrixView(const QRectF& frame, platform::MediaClock& klok, platform::Workspace& werkruimte);

    // Called for every such wish; may well be more than one. None: what comes in
    // is swallowed.
    std::function<void()> onSluit;

    // Time of construction, in seconds of the clock.
    [[nodiscard]] double begin() const { return begin_; }
    // From where the mouse is measured; screen coordinates, none until then.
    [[nodiscard]] std::optional<QPointF> beginPunt() const { return beginPunt_; }
    [[nodiscard]] const std::shared_ptr<platform::TrackingArea>& volgGebied() const {
        return volgGebied_;
    }

    [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
    void updateTrackingAreas() override;
    // Shift and its like alone are no key presses.
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
