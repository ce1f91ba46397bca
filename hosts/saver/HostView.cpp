// SPDX-License-Identifier: MIT
#include "hosts/saver/HostView.h"

#include <cmath>
#include <utility>

namespace brixtel {

namespace {
constexpr double kEchteBeweging = 50.0;  // points
}

HostView::HostView(std::shared_ptr<platform::ScreenSaverView> saver, Indeling indeling)
    : View({QPointF(0, 0), saver->frame().size()}),
      saver_(std::move(saver)),
      indeling_(std::move(indeling)) {
    saver_->setAutoresizingMask(WidthSizable | HeightSizable);
    addSubview(saver_);
}

void HostView::invoer() {
    // The action may drop this view.
    const auto actie = onInvoer_;
    if (actie) actie();
}

void HostView::setMuisTelt(bool telt) {
    muisTelt_ = telt;
    beginPunt_.reset();
}

void HostView::keyDown(const platform::KeyEvent& event) {
    const auto actie = onInstellingen_;
    if (actie && event.text.compare(u"i", Qt::CaseInsensitive) == 0)
        actie();
    else
        invoer();
}
void HostView::mouseDown(const platform::MouseEvent&) {
    invoer();
}
void HostView::rightMouseDown(const platform::MouseEvent&) {
    invoer();
}
void HostView::otherMouseDown(const platform::MouseEvent&) {
    invoer();
}

void HostView::mouseMoved(const platform::MouseEvent& event) {
    if (!muisTelt_) return;
    const QPointF punt = event.screenLocation;
    // A changed display moves every place on the screen, and the server moves the mouse
    // back inside.
    if (auto indeling = indeling_(); !beginPunt_ || indeling != beginIndeling_) {
        beginPunt_ = punt;
        beginIndeling_ = std::move(indeling);
    }
    const QPointF weg = punt - *beginPunt_;
    if (std::hypot(weg.x(), weg.y()) > kEchteBeweging) invoer();
}

}  // namespace brixtel
