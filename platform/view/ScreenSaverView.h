// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <functional>
#include <memory>
#include <utility>

#include "platform/session/DistributedNotificationCenter.h"
#include "platform/time/RandomSource.h"
#include "platform/time/Timer.h"
#include "platform/view/Sheet.h"
#include "platform/view/View.h"

namespace platform {

// The things that a host lends to a saver. The host owns them; they outlive the view.
struct ScreenSaverContext {
    MediaClock& clock;
    RandomSource& random;
    DistributedNotificationCenter& notifications;
};

// The base of a saver's principal view. The host makes a view for each screen, or a small
// view for a preview, puts it in a window, starts it and stops it. The host owns the view.
// Main thread.
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

    // One step of a saver that moves by steps. Called while the saver animates, if
    // wantsAnimateOneFrame(). For other saver modules: layers and scenes need no steps.
    virtual void animateOneFrame() {}
    [[nodiscard]] virtual bool wantsAnimateOneFrame() const { return false; }

    [[nodiscard]] virtual bool hasConfigureSheet() const { return false; }
    // The sheet; null for a saver without a sheet.
    [[nodiscard]] virtual std::shared_ptr<Sheet> configureSheet() { return nullptr; }
    // The user's pick in the view's sheet, in the saver's own words; empty before a pick.
    [[nodiscard]] virtual QString pickedInSheet() const { return {}; }
    // Treats a pick from a sheet in another process like a pick from the view's own
    // sheet.
    virtual void takePick(const QString&) {}

    // Sets what is called with a scene's name for the user, each time the view puts up a
    // scene. Nothing is called for the scene that is up already.
    void onShown(std::function<void(const QString&)> action) { onShown_ = std::move(action); }

  protected:
    void tellShown(const QString& name) const {
        if (onShown_) onShown_(name);
    }
    [[nodiscard]] const ScreenSaverContext& context() const { return context_; }

  private:
    void schedule();

    const ScreenSaverContext context_;
    const bool isPreview_;
    std::function<void(const QString&)> onShown_;
    bool animating_ = false;
    double interval_ = 1.0 / 30.0;
    Timer timer_;
};

}  // namespace platform
