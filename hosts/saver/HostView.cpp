// SPDX-License-Identifier: MIT
#include "hosts/saver/HostView.h"

#include <cmath>
#include <utility>

namespace brixtel {

namespace {
constexpr double kEchteBeweging = 50.0;  // points
constexpr double kDubbel = 0.4;          // seconds between the clicks of a double one
}  // namespace

HostView::Indeling HostView::Indeling::van(const platform::WindowSystem& systeem) {
    return {.schermen = platform::Screen::all(), .aangekondigd = systeem.announcedScreenChanges()};
}

HostView::HostView(std::shared_ptr<platform::ScreenSaverView> saver,
                   std::function<Indeling()> indeling)
    : View({QPointF(0, 0), saver->frame().size()}),
      saver_(std::move(saver)),
      indeling_(std::move(indeling)) {
    saver_->setAutoresizingMask(WidthSizable | HeightSizable);
    addSubview(saver_);
}

void HostView::setFrame(const QRectF& frame) {
    const bool andereMaat = frame.size() != bounds().size();
    View::setFrame(frame);
    if (andereMaat && onMaat_) onMaat_(frame.size());
}

void HostView::invoer() {
    // The action may drop this view.
    const auto actie = onInvoer_;
    if (actie) actie();
}

void HostView::inEigenVenster(platform::MediaClock& klok, EigenVenster daden) {
    klok_ = &klok;
    eigen_ = std::move(daden);
}

bool HostView::eigenToets(const platform::KeyEvent& event) {
    if (!klok_) return false;
    // The actions may drop this view.
    const EigenVenster daden = eigen_;
    if (event.key == Qt::Key_F11) {
        if (!event.isRepeat) daden.volledig();
    } else if (event.key == Qt::Key_Escape) {
        if (!event.isRepeat) daden.terug();
    } else if (event.key == Qt::Key_Q && (event.modifiers & Qt::ControlModifier) != 0) {
        daden.sluit();
    } else {
        return false;
    }
    return true;
}

void HostView::setMuisTelt(bool telt) {
    muisTelt_ = telt;
    beginPunt_.reset();
}

void HostView::keyDown(const platform::KeyEvent& event) {
    if (eigenToets(event)) return;
    const auto actie = onInstellingen_;
    if (actie && event.text.compare(u"i", Qt::CaseInsensitive) == 0)
        actie();
    else
        invoer();
}
void HostView::mouseDown(const platform::MouseEvent&) {
    if (!klok_) return invoer();
    const double nu = klok_->now();
    const bool dubbel = laatsteKlik_ && nu - *laatsteKlik_ <= kDubbel;
    // A third click is the first of the next pair.
    laatsteKlik_ = dubbel ? std::nullopt : std::optional(nu);
    const auto actie = eigen_.volledig;
    if (dubbel) actie();
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
