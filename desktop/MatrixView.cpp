// SPDX-License-Identifier: MIT
#include "desktop/MatrixView.h"

#include <cmath>

namespace brixtel {

using platform::TrackingArea;

namespace {

constexpr double kRespijt = 0.9;
constexpr double kAfstand = 50.0;
constexpr std::uint32_t kVolgOpties =
    TrackingArea::MouseMoved | TrackingArea::ActiveAlways | TrackingArea::InVisibleRect;

// Whether the key controls the playing music, or the light of screen or keyboard. A user
// presses such a key while watching the effect.
bool isMedia(int toets) {
    switch (toets) {
        case Qt::Key_VolumeDown:
        case Qt::Key_VolumeMute:
        case Qt::Key_VolumeUp:
        case Qt::Key_MicMute:
        case Qt::Key_MediaPlay:
        case Qt::Key_MediaStop:
        case Qt::Key_MediaPrevious:
        case Qt::Key_MediaNext:
        case Qt::Key_MediaPause:
        case Qt::Key_MediaTogglePlayPause:
        case Qt::Key_AudioRewind:
        case Qt::Key_AudioForward:
        case Qt::Key_AudioRepeat:
        case Qt::Key_AudioRandomPlay:
        case Qt::Key_MonBrightnessUp:
        case Qt::Key_MonBrightnessDown:
        case Qt::Key_KeyboardLightOnOff:
        case Qt::Key_KeyboardBrightnessUp:
        case Qt::Key_KeyboardBrightnessDown:
            return true;
        default:
            return false;
    }
}

}  // namespace

MatrixView::MatrixView(const QRectF& frame, platform::MediaClock& klok,
                       platform::Workspace& werkruimte)
    : View(frame), klok_(klok), werkruimte_(werkruimte), begin_(klok.now()) {}

void MatrixView::updateTrackingAreas() {
    View::updateTrackingAreas();
    if (volgGebied_) removeTrackingArea(volgGebied_);
    volgGebied_ =
        std::make_shared<TrackingArea>(TrackingArea{.rect = bounds(), .options = kVolgOpties});
    addTrackingArea(volgGebied_);
}

void MatrixView::sluit() {
    // The action may replace itself.
    if (const auto actie = onSluit) actie();
}

void MatrixView::keyDown(const platform::KeyEvent& toets) {
    switch (toets.key) {
        // The shortcut that ends the effect begins with a modifier.
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Meta:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Hyper_L:
        case Qt::Key_Hyper_R:
        case Qt::Key_Mode_switch:
            return;
        default:
            if (!isMedia(toets.key)) sluit();
    }
}

void MatrixView::mouseDown(const platform::MouseEvent&) {
    sluit();
}

void MatrixView::rightMouseDown(const platform::MouseEvent&) {
    sluit();
}

void MatrixView::otherMouseDown(const platform::MouseEvent&) {}

void MatrixView::mouseMoved(const platform::MouseEvent&) {
    if (klok_.now() - begin_ <= kRespijt) return;
    const QPointF p = werkruimte_.mouseLocation();
    if (!beginPunt_) {
        beginPunt_ = p;
        return;
    }
    if (std::hypot(p.x() - beginPunt_->x(), p.y() - beginPunt_->y()) > kAfstand) sluit();
}

}  // namespace brixtel
