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

// A view that plays a scene. Each frame moves the scene to its time and extracts the draw
// list. The scene is shared with its other holders. The scene stands still while the view
// does not play, and later goes on from the same time. Main thread. The clock outlives the
// view.
class SceneView : public View {
  public:
    SceneView(const QRectF& frame, MediaClock& clock);

    // The played scene. Without a scene the view shows its background alone.
    [[nodiscard]] const std::shared_ptr<Scene>& scene() const { return scene_; }
    void setScene(std::shared_ptr<Scene> scene);

    [[nodiscard]] bool isPlaying() const { return playing_; }
    void setPlaying(bool playing);

    // Whether the scene would start again at its end. A Scene has no end.
    [[nodiscard]] bool loops() const { return loops_; }
    void setLoops(bool loops) { loops_ = loops; }

    // The most frames a second; 0, the default, means the display's rhythm.
    [[nodiscard]] int preferredFramesPerSecond() const { return framesPerSecond_; }
    void setPreferredFramesPerSecond(int frames);

    // Samples per pixel at full quality: 1, 2 or 4.
    [[nodiscard]] int sampleCount() const { return sampleCount_; }
    void setSampleCount(int count);

    [[nodiscard]] const QColor& backgroundColor() const { return background_; }
    void setBackgroundColor(const QColor& colour);

    // Whether the user may turn the camera: never.
    [[nodiscard]] bool allowsCameraControl() const { return false; }

    [[nodiscard]] bool isOpaque() const override { return background_.alpha() == 255; }

    // The scene's time at the clock's present time, in seconds; 0 without a scene.
    [[nodiscard]] double sceneTime() const;

    // The clock's time at which the view wants its next frame: the next beat of its rhythm
    // while it plays, else never. A late frame does not shift the rhythm. A slightly faster
    // display still shows every beat.
    [[nodiscard]] double nextChange() const;

    // Moves the scene to its time and fills the pass. `origin` is the place of the bounds'
    // zero in the window.
    void fill(SceneFrame& pass, QPointF origin);

    // Sets the action for a window that cannot draw scenes. The action is called once, in a
    // turn of the event loop.
    void onFailure(std::function<void()> action) { failed_ = std::move(action); }
    void fail();

  protected:
    void build(FrameBuilder& builder, QPointF origin) override;

  private:
    void lookChanged();

    // Makes the scene's time count from `sceneTime` at the clock's present time.
    void anchor(double sceneTime);

    MediaClock& clock_;
    std::shared_ptr<Scene> scene_;
    bool playing_ = false;
    bool loops_ = false;
    int framesPerSecond_ = 0;
    int sampleCount_ = 1;
    QColor background_ = Qt::white;
    double anchorClock_;       // the clock's time at the anchor
    double anchorTime_ = 0.0;  // the scene's time at the anchor
    std::uint64_t picture_ = 0;
    bool changed_ = true;  // other than by time, since the last frame
    std::function<void()> failed_;
};

}  // namespace platform
