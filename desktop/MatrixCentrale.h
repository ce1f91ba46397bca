// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "connections/Gepubliceerd.h"
#include "desktop/MatrixVenster.h"
#include "desktop/MuziekStand.h"
#include "platform/time/Timer.h"
#include "platform/window/SceneWarmUp.h"
#include "platform/window/Screen.h"
#include "platform/window/Workspace.h"
#include "tafereel/Tafereel.h"

namespace brixtel {

// The visible state of the desktop rain.
enum class RegenStand {
    uit,
    aan,                // also while the black screen lies over it
    geenCompositor,     // wanted, but no window can be see-through; comes up with a compositor
    geenBovenlaag,      // refused: no window of this desktop can lie above all others
    geenDoorklik,       // refused: clicks would not pass to the windows below
    schermbeveiliging,  // wanted, but a saver or lock has the screen; comes back after it
    leeg,               // wanted, but of density 0: no drop falls
};

// The objects that the controller uses; all must outlive it. Its clock is the server's.
struct MatrixCentraleBronnen {
    platform::WindowServer& server;
    platform::Workspace& werkruimte;
    platform::RandomSource& toeval;
    std::function<std::vector<platform::Screen>()> schermen = platform::Screen::all;
    // The watcher for the globe, as in DrieWereldBronnen.
    VerbindingWacht* wacht = nullptr;
    LandenTabel* landen = nullptr;
    const LandKaart* kaart = nullptr;
};

// Two effects over the whole desktop, for the program that owns the controller:
// - the black screen: on each display an opaque window that takes the keyboard and shows
//   the rain or a 3D scene, until any deliberate input;
// - the desktop rain: on each display a see-through window above everything; clicks go
//   through the window.
//
// Both may be on; the black screen hides the rain while it shows. Showing an effect that is
// on and closing one that is off does nothing. The effects follow displays that come, go or
// change. Main thread only.
class MatrixCentrale {
  public:
    explicit MatrixCentrale(const MatrixCentraleBronnen& bronnen);
    // Takes everything down at once, and gives back the pointer and the keyboard.
    ~MatrixCentrale();
    MatrixCentrale(const MatrixCentrale&) = delete;
    MatrixCentrale& operator=(const MatrixCentrale&) = delete;

    // --- set by the owner, for effects shown from then on ---

    double snelheid = 1.0;   // of every rain
    double dichtheid = 0.7;  // of every rain, 0...1
    // Called thirty times a second while a shown black screen follows the music.
    std::function<std::optional<MuziekStand>()> muziekStand;
    bool opMuziek = false;   // whether the black screen follows the music
    double flitsDeel = 1.0;  // 0...1: how much of the flash on a beat shows
    // Called with true when the black screen has been shown, with false when it closes.
    std::function<void(bool)> onZwart;

    // --- the effects ---

    // The opacity of a rain that dims for a window to be read: text of the theme's middle green
    // keeps a contrast of 4.5 : 1 to the brightest digit.
    static constexpr double kGedimd = 0.15;

    // Shows the black screen: a scene, or the rain without a kind.
    void toonZwart(std::optional<DrieSoort> drie);
    void sluitZwart();
    void wisselZwart(std::optional<DrieSoort> drie);
    // Shows the desktop rain. On a desktop without a place for it the rain stays off, and
    // regenStand() gives the reason until sluitRegen().
    void toonRegen();
    void sluitRegen();
    void wisselRegen();
    // Gives a shown desktop rain the present `snelheid` at once. Another `dichtheid` comes as a
    // cross-fade to a new rain, within a third of a second.
    void pasRegenAan();
    // Keeps the window at this rectangle, in the space of Screen::frame, readable through the
    // desktop rain. The rain stays out of the rectangle. Where the window system tells no
    // window's place, the whole rain fades to kGedimd instead. An empty rectangle ends both.
    void laatLezen(const QRectF& vlak);
    void sluitAlles();

    [[nodiscard]] bool zwartAan() const { return !zwart_.empty(); }
    [[nodiscard]] bool regenAan() const { return !regen_.empty(); }
    [[nodiscard]] const Gepubliceerd<RegenStand>& regenStand() const { return stand_; }
    // Whether the rain was requested and refused.
    [[nodiscard]] bool isRegenGeweigerd() const;

    // --- the effects that are up now ---

    struct Zwart {
        std::unique_ptr<MatrixVenster> venster;
        std::unique_ptr<Tafereel> tafereel;         // owns the scene or the rain
        MatrixRegen* regen = nullptr;               // none while a scene shows
        std::shared_ptr<platform::SceneView> drie;  // none while it rains
        const DrieWereld* wereld = nullptr;         // the scene's
        std::shared_ptr<platform::Layer> flits;     // lights up green on a beat
        platform::Screen scherm;
    };
    struct Regen {
        std::unique_ptr<platform::Window> venster;
        std::unique_ptr<MatrixRegen> regen;
        platform::Screen scherm;
        double dichtheid = 0.0, snelheid = 0.0;  // at the rain's making
        std::unique_ptr<MatrixRegen> oud;        // the earlier rain, which fades out below
    };
    // One for each display.
    [[nodiscard]] const std::vector<Zwart>& zwart() const { return zwart_; }
    [[nodiscard]] const std::vector<Regen>& regen() const { return regen_; }
    // The worlds of the black screen, until it has faded.
    [[nodiscard]] const std::vector<std::shared_ptr<DrieWereld>>& drieWerelden() const {
        return drieWerelden_;
    }
    [[nodiscard]] const platform::Timer& muziekKlok() const { return muziekKlok_; }
    // The application that had the keyboard when the black screen opened.
    [[nodiscard]] const std::optional<platform::RunningApplication>& vorigeApp() const {
        return vorigeApp_;
    }
    // Whether the pointer is hidden by this controller.
    [[nodiscard]] bool cursorWeg() const { return cursorWeg_; }

  private:
    // A black screen that fades out; its windows are dropped after the fade.
    struct Sluitend {
        int nummer;
        std::vector<Zwart> zwart;
        std::vector<Regen> regen;
        std::vector<const DrieWereld*> werelden;
        // The warm-up is dropped with the rest, so that closing does not wait for it.
        std::unique_ptr<platform::SceneWarmUp> opwarming;
        // The application that was given the keyboard back. The window system may report that
        // change only after the fade.
        std::optional<platform::RunningApplication> vorigeApp;
    };

    // Calls `doe` with this controller, as long as it exists.
    template <typename Doe>
    [[nodiscard]] auto zwak(Doe doe) {
        return [zelf = std::weak_ptr<MatrixCentrale*>(zelf_), doe] {
            if (const auto z = zelf.lock()) doe(**z);
        };
    }

    enum class Inzet { Geleidelijk, Meteen };
    Zwart maakZwart(const platform::Screen& scherm, Inzet inzet);
    void vul(Zwart& zwart, platform::View& view);
    void geenDrie();
    [[nodiscard]] std::shared_ptr<platform::Layer> tip(double breedte, double schaal) const;
    void startKlok();
    void startMuziek(double& tempo, int& vorigeBeat);
    void flits(double sterkte);
    void vergeetWereld(const Zwart& zwart);

    Regen maakRegen(const platform::Screen& scherm);
    [[nodiscard]] std::unique_ptr<MatrixRegen> maakDoorzichtig(const platform::Screen& scherm);
    void vervaag(Regen& regen);
    void rondOvergangAf();
    void zetVrij(const Regen& regen) const;
    [[nodiscard]] bool kentPlaatsen() const;
    [[nodiscard]] double regenDekking() const;
    void toonRegenVenster(Regen& regen);
    // The reason why this desktop can never have the rain; none where it can.
    [[nodiscard]] std::optional<RegenStand> regenBeletsel() const;
    [[nodiscard]] RegenStand watRegenMag() const;
    // Shows or hides the rain's windows to match the present state, and publishes that
    // state.
    void werkRegenBij();

    [[nodiscard]] std::optional<platform::RunningApplication> voorsteApp() const;
    void laatUitgaan(Sluitend sluitend, double duur);
    void rondAf(int nummer);
    void veranderd(platform::Workspace::Change wat);
    void verbergCursor(bool weg);
    void neemToetsen();
    void volgSchermen();
    void volgZwart(const std::vector<platform::Screen>& schermen);
    void volgRegen(const std::vector<platform::Screen>& schermen);

    const MatrixCentraleBronnen bronnen_;
    platform::MediaClock& klok_;
    std::vector<Zwart> zwart_;
    std::unique_ptr<platform::SceneWarmUp> opwarming_;
    std::vector<std::shared_ptr<DrieWereld>> drieWerelden_;
    platform::Timer muziekKlok_;
    std::vector<Regen> regen_;
    platform::Timer overgangKlok_;  // the end of a cross-fade to another density
    QRectF lezen_;                  // of the window that the desktop rain leaves readable
    std::optional<platform::RunningApplication> vorigeApp_;
    bool cursorWeg_ = false;

    std::optional<DrieSoort> soort_;  // of the black screen
    std::vector<Sluitend> sluitend_;
    int laatsteNummer_ = 0;
    Gepubliceerd<RegenStand> stand_{RegenStand::uit};
    platform::Timer toetsenKlok_;
    double laatstGenomen_ = -1e9;  // when the keyboard was last taken back, on the clock
    int genomen_ = 0;
    platform::Observation werkruimte_;
    platform::ScreenObserver schermen_;
    std::shared_ptr<MatrixCentrale*> zelf_ = std::make_shared<MatrixCentrale*>(this);
};

}  // namespace brixtel
