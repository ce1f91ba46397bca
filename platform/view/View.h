// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/layers/Layer.h"
#include "platform/view/Events.h"
#include "platform/view/ViewHost.h"

class QPainter;

namespace platform {

class FrameBuilder;

// A part of a view that receives movements of the mouse.
struct TrackingArea {
    enum Options : std::uint32_t {
        MouseMoved = 0x02,
        ActiveAlways = 0x80,    // also while another window or program has the keyboard
        InVisibleRect = 0x200,  // all of the view, whatever its size
    };
    QRectF rect;  // in the view's bounds
    std::uint32_t options = 0;
};

// One rectangle of a window, with a picture and perhaps input. Views form a tree: a view
// shares its subviews with their other holders, and does not own its superview. Main
// thread.
//
// Points, origin at the lower left, y up; a subview lies in its superview's
// bounds. A view shows the painting of draw(), then its layer's tree, then its
// subviews in order. Only the window clips.
class View {
  public:
    // The dimensions that follow a resize of the superview, as bits of a mask. The left and
    // lower margins stay.
    enum Autoresizing : std::uint32_t { WidthSizable = 2, HeightSizable = 16 };

    explicit View(const QRectF& frame);
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    [[nodiscard]] const QRectF& frame() const { return frame_; }
    // Also resizes the layer and the subviews.
    virtual void setFrame(const QRectF& frame);
    [[nodiscard]] QRectF bounds() const { return {QPointF(0, 0), frame_.size()}; }

    [[nodiscard]] std::uint32_t autoresizingMask() const { return autoresizing_; }
    void setAutoresizingMask(std::uint32_t mask) { autoresizing_ = mask; }

    // The backing layer fills the bounds, and exists while the view wants one.
    void setWantsLayer(bool wants);
    [[nodiscard]] const std::shared_ptr<Layer>& layer() const { return layer_; }

    // Adding a view removes it from its former superview. A cycle is a programming error.
    [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
    void addSubview(std::shared_ptr<View> view);
    void removeFromSuperview();
    [[nodiscard]] View* superview() const { return superview_; }

    // The window that shows the view; nullptr outside a window.
    [[nodiscard]] Window* window() const { return host_ ? host_->asWindow() : nullptr; }
    // Whether the view covers all that lies below it. For hosts; frames do not depend on it.
    [[nodiscard]] virtual bool isOpaque() const { return false; }

    // Paints the part `dirty` of the bounds, y up; the view keeps the painting. Called for the
    // next frame after setNeedsDisplay(), and after a new size or scale of a view once so
    // marked. For views that paint: views of layers and scenes are never marked.
    virtual void draw(QPainter& painter, const QRectF& dirty);
    void setNeedsDisplay();

    // Input. A key goes to the window's first responder, a mouse event to the topmost view
    // under the mouse. An event that a view does not override goes on to its superview.
    [[nodiscard]] virtual bool acceptsFirstResponder() const { return false; }
    virtual void keyDown(const KeyEvent& event);
    virtual void mouseDown(const MouseEvent& event);
    virtual void rightMouseDown(const MouseEvent& event);
    virtual void otherMouseDown(const MouseEvent& event);  // the middle and further buttons
    virtual void mouseMoved(const MouseEvent& event);

    // The areas in which the view receives movements of the mouse, even where another view
    // lies above. updateTrackingAreas() is called when the view comes into a window or
    // changes size.
    [[nodiscard]] const std::vector<std::shared_ptr<TrackingArea>>& trackingAreas() const {
        return trackingAreas_;
    }
    void addTrackingArea(std::shared_ptr<TrackingArea> area);
    void removeTrackingArea(const std::shared_ptr<TrackingArea>& area);
    virtual void updateTrackingAreas();

    // The topmost view of this tree at a point of the superview's bounds; nullptr outside
    // this view's frame.
    [[nodiscard]] View* hitTest(QPointF point);

  protected:
    // Adds the view's own picture, without its subviews. `origin` is the place of the bounds'
    // zero in the window.
    virtual void build(FrameBuilder& builder, QPointF origin);

    // Asks the window, if any, for a frame.
    void changed();

  private:
    friend class FrameBuilder;
    friend class Window;
    friend class WindowCore;
    // Tells the views whose tracking area holds the place, except `told` and its
    // superviews.
    void track(QPointF inSuperview, const View* told, const MouseEvent& event);
    void setHost(ViewHost* host);
    void paint(double scale);

    QRectF frame_;
    std::uint32_t autoresizing_ = 0;
    std::shared_ptr<Layer> layer_;
    std::unique_ptr<Layer> painting_;
    bool needsDisplay_ = false;
    double paintedScale_ = 0.0;
    std::vector<std::shared_ptr<TrackingArea>> trackingAreas_;
    std::vector<std::shared_ptr<View>> subviews_;
    View* superview_ = nullptr;
    ViewHost* host_ = nullptr;
};

}  // namespace platform
