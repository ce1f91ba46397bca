// SPDX-License-Identifier: MIT
#include "platform/view/ScreenSaverView.h"

namespace platform {

ScreenSaverView::ScreenSaverView(const QRectF& frame, bool isPreview,
                                 const ScreenSaverContext& context)
    : View(frame), context_(context), isPreview_(isPreview) {}

ScreenSaverView::~ScreenSaverView() = default;

void ScreenSaverView::startAnimation() {
    animating_ = true;
    schedule();
}

void ScreenSaverView::stopAnimation() {
    animating_ = false;
    schedule();
}

void ScreenSaverView::setAnimationTimeInterval(double seconds) {
    interval_ = seconds;
    schedule();
}

void ScreenSaverView::schedule() {
    timer_ = Timer();
    // An interval of 0 means no steps.
    if (!animating_ || interval_ <= 0.0 || !wantsAnimateOneFrame()) return;
    timer_ = Timer(context_.clock, {.interval = interval_, .repeats = true},
                   [this] { animateOneFrame(); });
}

}  // namespace platform
