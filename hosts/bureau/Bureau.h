// SPDX-License-Identifier: MIT
#pragma once

#include <optional>
#include <type_traits>

#include "connections/Gepubliceerd.h"
#include "desktop/MatrixCentrale.h"
#include "hosts/bureau/BureauInstellingen.h"
#include "hosts/bureau/GedoseerdeActie.h"
#include "hosts/bureau/muziek/MuziekLuisteraar.h"

namespace brixtel {

// The state of the desktop effects, for a panel, a tray or a client.
struct BureauStand {
    bool zwart = false;
    std::optional<DrieSoort> soort;  // of the black screen; none is the rain
    bool regen = false;
    RegenStand regenStand = RegenStand::uit;
    BureauKeuzes keuzes;
    QString rustUitleg;  // why nothing comes after the chosen rest; empty where it does
    friend bool operator==(const BureauStand&, const BureauStand&) = default;
};

// The reason why the desktop rain is on and cannot be seen; empty where the rain is off or
// visible.
[[nodiscard]] QString uitleg(RegenStand stand);

// The owner of the desktop effects. It drives the controller, keeps the user's choices and
// publishes the state. It listens to the music while a black screen follows the music or
// luisterMee() is on. Main thread; the objects given to the constructor must outlive it.
class Bureau {
  public:
    explicit Bureau(const MatrixCentraleBronnen& bronnen,
                    platform::MonitorRecorderOptions geluid = {});
    ~Bureau();
    Bureau(const Bureau&) = delete;
    Bureau& operator=(const Bureau&) = delete;

    // The reason why no black screen can be shown now: a screen saver or lock is active,
    // and a black screen would lie over it. Empty where a black screen can be shown or is
    // shown already.
    [[nodiscard]] QString zwartBeletsel() const;
    // The reason why the rain was refused; empty where it was not refused.
    [[nodiscard]] QString regenWeigering() const;

    // Does nothing where there is a zwartBeletsel(); otherwise as in MatrixCentrale.
    void toonZwart(std::optional<DrieSoort> soort);
    void sluitZwart();
    void wisselZwart(std::optional<DrieSoort> soort);
    void toonRegen();
    void sluitRegen();
    void wisselRegen();
    void sluitAlles();

    // Sets the choices. The desktop rain takes its speed at once and fades into another
    // density. A black screen stops following the music, and softens its flash, at once; it has
    // the other choices from its next opening. The choices are kept between runs, and written
    // at most every 0.15 s. The last choices are always written, at the latest when the object
    // is dropped.
    void zetKeuzes(const BureauKeuzes& keuzes);
    // The error of the last write of the choices; empty on success.
    [[nodiscard]] QString bewaarMis() const;
    // Writes waiting choices at once.
    void bewaar() { bewaring_.doeNu(); }

    // Says whether anybody tells this program of the user's rest.
    void zetRustBewaakt(bool bewaakt);

    // Sets one choice; the others stay.
    template <typename T>
    void kies(T BureauKeuzes::*keuze, const std::type_identity_t<T>& waarde) {
        BureauKeuzes keuzes = keuzes_;
        keuzes.*keuze = waarde;
        zetKeuzes(keuzes);
    }

    // Brings a window of this program to the front, from any virtual desktop.
    void activeer(const platform::WindowRef& venster) { werkruimte_.activate({.window = venster}); }

    // Keeps a window readable through the desktop rain, as in MatrixCentrale.
    void laatLezen(const QRectF& vlak) { centrale_.laatLezen(vlak); }

    // Listens to the music also while no black screen shows, as long as the choice is to
    // follow the music. For a panel that shows the loudness and the beats.
    void luisterMee(bool aan);

    // The state; one call publishes it once, however many fields change.
    [[nodiscard]] const Gepubliceerd<BureauStand>& stand() const { return stand_; }

    [[nodiscard]] const MatrixCentrale& centrale() const { return centrale_; }
    [[nodiscard]] const MuziekLuisteraar& muziek() const { return muziek_; }

  private:
    template <typename Doe>
    void na(Doe doe);
    void meld();
    [[nodiscard]] QString rustUitleg() const;

    platform::MediaClock& klok_;
    platform::Workspace& werkruimte_;
    BureauKeuzes keuzes_;
    int bewaarFout_ = 0;
    GedoseerdeActie bewaring_;
    MuziekLuisteraar muziek_;
    MatrixCentrale centrale_;
    std::optional<DrieSoort> soort_;
    int bezig_ = 0;
    bool luisterMee_ = false;
    bool rustBewaakt_ = true;
    Gepubliceerd<BureauStand> stand_;
    Abonnement regen_;
    platform::Observation beveiliging_;
};

}  // namespace brixtel
