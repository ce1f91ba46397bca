// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>

#include "hosts/bureau/Bureau.h"

namespace brixtel {

// The objects that NaRust uses; all must outlive it.
struct NaRustBronnen {
    // A running watch on the user's input; dropping it ends the watch.
    using Wacht = std::shared_ptr<void>;
    struct Wens {
        double seconden = 0.0;                  // without input
        std::function<void()> bijRust;          // called each time that the seconds have passed
        std::function<void(bool)> bijBewaking;  // called with whether the input is watched
    };
    using MaakWacht = std::function<Wacht(const Wens& wens)>;

    platform::Workspace& werkruimte;
    platform::RandomSource& toeval;
    MaakWacht maakWacht;
};

// Shows the scene of the saver's choice as a black screen, after the time without input that
// the user chose. The rotating choice gives another scene each time. A saver or lock closes
// that black screen. Main thread; the owner must outlive it.
class NaRust {
  public:
    NaRust(Bureau& bureau, const NaRustBronnen& bronnen);
    NaRust(const NaRust&) = delete;
    NaRust& operator=(const NaRust&) = delete;

  private:
    void volg(const BureauStand& stand);
    void begin();

    Bureau& bureau_;
    const NaRustBronnen bronnen_;
    int minuten_ = 0;
    bool vanRust_ = false;  // this object opened the present black screen
    NaRustBronnen::Wacht wacht_;
    Abonnement stand_;
    platform::Observation beveiliging_;
};

}  // namespace brixtel
