// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <memory>

#include "platform/session/DistributedNotificationCenter.h"
#include "platform/time/RandomSource.h"
#include "platform/time/Timer.h"
#include "platform/view/Sheet.h"
#include "platform/view/View.h"

namespace platform {

// The things that a host hands to a saver; they outlive the view.
struct ScreenSaverContext {
    MediaClock& clock;
    RandomSource& random;
    DistributedNotificationCenter& notifications;
};

// The base of a saver's principal view. The host makes one for each screen, and
// a small one for a preview, puts it in a window and starts and stops it. Main
// thread.
class ScreenSaverView : public View {
  public:
    ScreenSaverView(const QRectF& frame, bool isPreview, const ScreenSaverContext& context);
    ~ScreenSaverView() override;

    [[nodiscard]] bool isPreview() const { return isPreview_; }

    virtual void startAnimation();
    virtual void stopAnimation();
    [[nodiscard]] bool isAnimating() const { return animating_; }

    // Seconds between calls of animateOneFrame().
    [[nodiscard]] double animationTimeInterval() const { return interval_; }
    void setAnimationTimeInterval(double seconds);

    // A step of a saver that moves itself by steps. Called while animating, and
    // only where wantsAnimateOneFrame() says so: layers and scenes move without.
    virtual void animateOneFrame() {}
    [[nodiscard]] virtual bool wantsAnimateOneFrame() const { return false; }

    [[nodiscard]] virtual bool hasConfigureSheet() const { return false; }
    // None without one.
    [[nodiscard]] virtual std::shared_ptr<Sheet> configureSheet() { return nullptr; }
    // The user's pick in the view's sheet, in the saver's own words; empty until then.
    [[nodiscard]] virtual QString pickedInSheet() const { return {}; }
    // Treats the pick as one of the view's own sheet. For a sheet that another process
    // showed.
    virtual void takePick(const QString&) {}

  protected:
    [[nodiscard]] const ScreenSaverContext& context() const { return context_; }

  private:
    void schedule();

    const ScreenSaverContext context_;
    const bool isPreview_;
    bool animating_ = false;
    double interval_ = 1.0 / 30.0;
    Timer timer_;
};

}  // namespace platform
