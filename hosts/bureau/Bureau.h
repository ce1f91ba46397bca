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

// How the desktop effects stand, for whoever shows it.
struct BureauStand {
    bool zwart = false;
    std::optional<DrieSoort> soort;  // of the black screen; none for the rain
    bool regen = false;
    RegenStand regenStand = RegenStand::uit;
    BureauKeuzes keuzes;
    friend bool operator==(const BureauStand&, const BureauStand&) = default;
};

// Why the desktop rain is on and cannot be seen; empty where it can, or is off.
[[nodiscard]] QString uitleg(RegenStand stand);

// The owner of the desktop effects: drives the controller, listens to the music
// while a black screen follows it or the user is shown what it hears, keeps the user's choices, and
// tells how things stand. Main thread; what it is made of must outlive it.
class Bureau {
  public:
    explicit Bureau(const MatrixCentraleBronnen& bronnen,
                    platform::MonitorRecorderOptions geluid = {});
    ~Bureau();
    Bureau(const Bureau&) = delete;
    Bureau& operator=(const Bureau&) = delete;

    // Why no black screen can be shown now: it would lie over the screen saver or
    // lock that is active. Empty where it can, or shows already.
    [[nodiscard]] QString zwartBeletsel() const;
    // Why the rain was refused; empty where it was not.
    [[nodiscard]] QString regenWeigering() const;

    // As in MatrixCentrale, except that what has a zwartBeletsel() does nothing.
    void toonZwart(std::optional<DrieSoort> soort);
    void sluitZwart();
    void wisselZwart(std::optional<DrieSoort> soort);
    void toonRegen();
    void sluitRegen();
    void wisselRegen();
    void sluitAlles();

    // The desktop rain takes its speed at once and fades into another density. A black
    // screen has the choices from its next opening, except that it stops following the
    // music, and softens its flash, at once. The choices are kept between runs and
    // written at most every 0.15 s; the last ones are always written, at the latest when
    // this is dropped.
    void zetKeuzes(const BureauKeuzes& keuzes);
    // Why the choices are not kept, as it was when they were written out last; empty
    // where they are.
    [[nodiscard]] QString bewaarMis() const;
    // Writes choices that wait for it at once.
    void bewaar() { bewaring_.nu(); }

    // One of them; the others stay as they are.
    template <typename T>
    void kies(T BureauKeuzes::*keuze, const std::type_identity_t<T>& waarde) {
        BureauKeuzes keuzes = keuzes_;
        keuzes.*keuze = waarde;
        zetKeuzes(keuzes);
    }

    // Brings a window of this program to the front, from whatever desktop it is on.
    void activeer(std::uint32_t venster) { werkruimte_.activate({.window = venster}); }

    // The desktop rain leaves this rectangle of the screens free: what stands there is to
    // be read. As in Screen::frame; an empty one is none.
    void laatVrij(const QRectF& vlak) { centrale_.laatVrij(vlak); }

    // Listens to the music also while no black screen shows, for as long as the
    // choice is to follow it: for whoever shows the user what it hears.
    void luisterMee(bool aan);

    // Published once for all that one call changes.
    [[nodiscard]] const Gepubliceerd<BureauStand>& stand() const { return stand_; }

    [[nodiscard]] const MatrixCentrale& centrale() const { return centrale_; }
    [[nodiscard]] const MuziekLuisteraar& muziek() const { return muziek_; }

  private:
    template <typename Doe>
    void na(Doe doe);
    void meld();

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
    Gepubliceerd<BureauStand> stand_;
    Abonnement regen_;
    platform::Observation beveiliging_;
};

}  // namespace brixtel
