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

// A part of a view in which it is told of a moving mouse.
struct TrackingArea {
    enum Options : std::uint32_t {
        MouseMoved = 0x02,
        ActiveAlways = 0x80,    // also while another window or program has the keyboard
        InVisibleRect = 0x200,  // all of the view, whatever its size
    };
    QRectF rect;  // in the view's bounds
    std::uint32_t options = 0;
};

// One rectangle of a window that shows something and may handle input. Views
// form a tree: a view holds its subviews, and whoever else keeps a shared_ptr
// shares it. Main thread.
//
// Points, origin at the lower left, y up; a subview lies in its superview's
// bounds. A view shows what draw() painted, then its layer's tree, then its
// subviews in order; nothing is clipped but by the window.
class View {
  public:
    // The sides that follow a resize of the superview, as bits of a mask; the
    // lower left margins stay.
    enum Autoresizing : std::uint32_t { WidthSizable = 2, HeightSizable = 16 };

    explicit View(const QRectF& frame);
    virtual ~View();
    View(const View&) = delete;
    View& operator=(const View&) = delete;

    [[nodiscard]] const QRectF& frame() const { return frame_; }
    // Resizes the layer and the subviews along.
    virtual void setFrame(const QRectF& frame);
    [[nodiscard]] QRectF bounds() const { return {QPointF(0, 0), frame_.size()}; }

    [[nodiscard]] std::uint32_t autoresizingMask() const { return autoresizing_; }
    void setAutoresizingMask(std::uint32_t mask) { autoresizing_ = mask; }

    // The backing layer fills the bounds and is there while it is wanted.
    void setWantsLayer(bool wants);
    [[nodiscard]] const std::shared_ptr<Layer>& layer() const { return layer_; }

    // Adding takes a view out of where it was; a cycle is a programming error.
    [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
    void addSubview(std::shared_ptr<View> view);
    void removeFromSuperview();
    [[nodiscard]] View* superview() const { return superview_; }

    // The window that shows it; nullptr outside one.
    [[nodiscard]] Window* window() const { return host_ ? host_->asWindow() : nullptr; }

    [[nodiscard]] virtual bool isOpaque() const { return false; }

    // Paints the part `dirty` of the bounds, y up. Called before the next frame
    // after setNeedsDisplay() or a new size, and only for views that were ever
    // so marked: most show layers alone. The painting is kept.
    virtual void draw(QPainter& painter, const QRectF& dirty);
    void setNeedsDisplay();

    // Input. Each goes on to the superview unless overridden; a key goes
    // to the window's first responder, the mouse to the topmost view under it.
    [[nodiscard]] virtual bool acceptsFirstResponder() const { return false; }
    virtual void keyDown(const KeyEvent& event);
    virtual void mouseDown(const MouseEvent& event);
    virtual void rightMouseDown(const MouseEvent& event);
    virtual void otherMouseDown(const MouseEvent& event);  // the middle one and beyond
    virtual void mouseMoved(const MouseEvent& event);

    // Where the view is told of a moving mouse also when a view that is not below
    // it lies under it. updateTrackingAreas() is called when the view comes into
    // a window or changes size.
    [[nodiscard]] const std::vector<std::shared_ptr<TrackingArea>>& trackingAreas() const {
        return trackingAreas_;
    }
    void addTrackingArea(std::shared_ptr<TrackingArea> area);
    void removeTrackingArea(const std::shared_ptr<TrackingArea>& area);
    virtual void updateTrackingAreas();

    // The topmost view of this tree at a point of the superview's bounds;
    // nullptr beside it.
    [[nodiscard]] View* hitTest(QPointF point);

  protected:
    // Adds what the view itself shows, without its subviews. `origin` is the
    // place of its bounds' zero in the window.
    virtual void build(FrameBuilder& builder, QPointF origin);

    // Asks the window, if any, for a frame.
    void changed();

  private:
    friend class FrameBuilder;
    friend class Window;
    friend class WindowCore;
    // Tells those whose tracking area holds the place, but not those up from
    // `told`.
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
