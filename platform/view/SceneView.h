// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <functional>
#include <memory>

#include "platform/scene/Scene.h"
#include "platform/time/MediaClock.h"
#include "platform/view/SceneFrame.h"
#include "platform/view/View.h"

namespace platform {

// A view that plays a scene: while it plays, each frame brings the scene to the
// clock's time and takes out of it what is to be drawn. The scene is shared, and
// goes on from the time at which it stands; between playing it stands still.
// Main thread. The clock must outlive the view.
class SceneView : public View {
  public:
    SceneView(const QRectF& frame, MediaClock& clock);

    // None shows the background alone.
    [[nodiscard]] const std::shared_ptr<Scene>& scene() const { return scene_; }
    void setScene(std::shared_ptr<Scene> scene);

    [[nodiscard]] bool isPlaying() const { return playing_; }
    void setPlaying(bool playing);

    // Whether it would begin again at its end; a scene of ours has none.
    [[nodiscard]] bool loops() const { return loops_; }
    void setLoops(bool loops) { loops_ = loops; }

    // Frames a second at most; 0, the default, is the display's own rhythm.
    [[nodiscard]] int preferredFramesPerSecond() const { return framesPerSecond_; }
    void setPreferredFramesPerSecond(int frames);

    // Samples per pixel at full quality: 1, 2 or 4.
    [[nodiscard]] int sampleCount() const { return sampleCount_; }
    void setSampleCount(int count);

    [[nodiscard]] const QColor& backgroundColor() const { return background_; }
    void setBackgroundColor(const QColor& colour);

    // Whether the user may turn the camera; never done here.
    [[nodiscard]] bool allowsCameraControl() const { return false; }

    [[nodiscard]] bool isOpaque() const override { return background_.alpha() == 255; }

    // The time at which the scene is to stand now; 0 without one.
    [[nodiscard]] double sceneTime() const;

    // When the view wants its next frame: the next beat of its own rhythm while it
    // plays, else never. The rhythm keeps its beat however late a frame is, and a
    // display that is a little faster still shows every beat.
    [[nodiscard]] double nextChange() const;

    // Brings the scene to its time and fills the pass with it, `origin` being the
    // place of the bounds' zero in the window.
    void fill(SceneFrame& pass, QPointF origin);

    // Called when the window that shows it turns out to have no means to draw
    // scenes; once, in a turn of the event loop.
    void onFailure(std::function<void()> action) { failed_ = std::move(action); }
    void fail();

  protected:
    void build(FrameBuilder& builder, QPointF origin) override;

  private:
    void lookChanged();

    // From now on the scene's time counts from this one.
    void anchor(double sceneTime);

    MediaClock& clock_;
    std::shared_ptr<Scene> scene_;
    bool playing_ = false;
    bool loops_ = false;
    int framesPerSecond_ = 0;
    int sampleCount_ = 1;
    QColor background_ = Qt::white;
    double anchorClock_;       // at this time of the clock ...
    double anchorTime_ = 0.0;  // ... the scene stood at this one of its own
    std::uint64_t picture_ = 0;
    bool changed_ = true;  // since the last frame, other than by time
    std::function<void()> failed_;
};

}  // namespace platform
