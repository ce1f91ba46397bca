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
    // Called each time the rain is made.
    std::function<MatrixRegenOpties()> regen;
    // Called when the scene cannot be drawn, and the rain takes its place. The scene's view
    // is off the screen by then and still owned until the call returns.
    std::function<void()> bijGeenDrie;
};

// The content of a view: a 3D scene in a subview that follows the view's size, or the rain
// in the view's layer, where no scene is asked for or none can be drawn. Owns the scene's
// world and view, or the rain, and removes them when it is dropped. The view, the clock and
// the source of randomness must outlive it. Main thread.
class Tafereel {
  public:
    Tafereel(platform::View& in, TafereelOpties opties, const DrieWereldBronnen& bronnen);
    ~Tafereel();
    Tafereel(const Tafereel&) = delete;
    Tafereel& operator=(const Tafereel&) = delete;

    // The scene's view; none while it rains.
    [[nodiscard]] const std::shared_ptr<platform::SceneView>& scn() const { return scn_; }
    [[nodiscard]] const std::shared_ptr<DrieWereld>& wereld() const { return wereld_; }
    // The rain; none while a scene shows.
    [[nodiscard]] MatrixRegen* regen() const { return regen_.get(); }

    // Makes the rain anew, at the present size and density. Does nothing while a scene
    // shows.
    void vernieuwRegen();

    // Stops all movement and drops the scene; the last picture stays.
    void stop();

  private:
    void toonRegen();
    void toonWereld(DrieSoort soort);
    void weg();
    void geenDrie();

    platform::View& view_;
    const TafereelOpties opties_;
    const DrieWereldBronnen bronnen_;
    std::shared_ptr<platform::SceneView> scn_;
    std::shared_ptr<DrieWereld> wereld_;
    std::unique_ptr<MatrixRegen> regen_;
};

}  // namespace brixtel
