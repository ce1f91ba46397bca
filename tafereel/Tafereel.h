// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/view/SceneView.h"
#include "rain/MatrixRegen.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

struct TafereelOpties {
    std::optional<DrieSoort> soort;  // none: the rain
    DrieWereldOpties wereld;
    // Asked each time the rain is made.
    std::function<MatrixRegenOpties()> regen;
    // Called when nothing here can draw the scene, and it rains in its place. The scene's
    // view is off the screen by then and still owned until the call returns.
    std::function<void()> bijGeenDrie;
};

// What a view shows: a scene in 3D over the whole of it, as a subview that follows its
// size; or the rain, in the view's layer, where no scene is asked for or none can be drawn.
// Owns the scene's world and view, or the rain, and takes them down when it is dropped.
// The view, the clock and the source of randomness must outlive it. Main thread.
class Tafereel {
  public:
    Tafereel(platform::View& in, TafereelOpties opties, const DrieWereldBronnen& bronnen);
    ~Tafereel();
    Tafereel(const Tafereel&) = delete;
    Tafereel& operator=(const Tafereel&) = delete;

    // The scene's; none while it rains.
    [[nodiscard]] const std::shared_ptr<platform::SceneView>& scn() const { return scn_; }
    [[nodiscard]] const std::shared_ptr<DrieWereld>& wereld() const { return wereld_; }
    // None while a scene shows.
    [[nodiscard]] MatrixRegen* regen() const { return regen_.get(); }

    // The rain made anew, at the size and density that are asked for now. Only while it
    // rains.
    void vernieuwRegen();

    // Nothing moves any more, and the scene is let go of; what was drawn last stays.
    void stop();

  private:
    void toonRegen();
    void toonWereld(DrieSoort soort);
    void weg();
    void geenDrie();

    platform::View& in_;
    const TafereelOpties opties_;
    const DrieWereldBronnen bronnen_;
    std::shared_ptr<platform::SceneView> scn_;
    std::shared_ptr<DrieWereld> wereld_;
    std::unique_ptr<MatrixRegen> regen_;
};

}  // namespace brixtel
