// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/time/Timer.h"
#include "platform/view/ScreenSaverView.h"
#include "tafereel/Tafereel.h"
#include "worlds/BolVoorraad.h"

namespace brixtel {

class Opkomst;

// The saver's principal view: a black surface that shows one scene at a time. In the
// rotating mode a new scene fades up from black every minute. Scenes move themselves; the
// view draws nothing but black. Main thread.
class BrixtelSaverView : public platform::ScreenSaverView {
  public:
    BrixtelSaverView(const QRectF& frame, bool isPreview,
                     const platform::ScreenSaverContext& context);
    ~BrixtelSaverView() override;

    // Shows the stored choice.
    void startAnimation() override;
    void stopAnimation() override;

    // The rain is built for one size, so a new size builds it anew.
    void setFrame(const QRectF& frame) override;

    // A host may skip the content behind an opaque view.
    [[nodiscard]] bool isOpaque() const override { return true; }
    // For a host that marks the view with setNeedsDisplay(); the black layer covers the same.
    void draw(QPainter& painter, const QRectF& dirty) override;

    [[nodiscard]] bool hasConfigureSheet() const override { return true; }
    // Makes a new sheet each time, and keeps it until the next call. The picked mode is
    // stored, and shown at once by a view that was ever started. None in a program without
    // a QApplication.
    std::shared_ptr<platform::Sheet> configureSheet() override;
    [[nodiscard]] QString pickedInSheet() const override;
    void takePick(const QString& pick) override;

    // The present content, at most one scene. `nu` and `huidige` keep their last value when
    // the scene is removed.
    [[nodiscard]] std::shared_ptr<platform::SceneView> scn() const {
        return tafereel_ ? tafereel_->scn() : nullptr;
    }
    [[nodiscard]] const DrieWereld* wereld() const {
        return tafereel_ ? tafereel_->wereld().get() : nullptr;
    }
    [[nodiscard]] const MatrixRegen* regen() const {
        return tafereel_ ? tafereel_->regen() : nullptr;
    }
    [[nodiscard]] const platform::Timer& wisselKlok() const { return wisselKlok_; }
    // The mode last asked for; none before the first start.
    [[nodiscard]] std::optional<SaverKeuze> nu() const { return nu_; }
    // The scene last shown; never the rotating mode.
    [[nodiscard]] std::optional<SaverKeuze> huidige() const { return huidige_; }

  protected:
    using Klaar = std::function<void(SaverKeuze)>;
    // Makes the sheet that calls `klaar` with the user's choice.
    virtual std::shared_ptr<platform::Sheet> maakInstellingenVenster(Klaar klaar);

  private:
    void kies(SaverKeuze keuze);
    void toon(SaverKeuze keuze);
    void laat(SaverKeuze keuze);
    void wissel();
    // The rain takes the place of every scene in 3D from here on.
    void zonderDrie();
    void weg();
    void stopt();
    void stopKlok();

    // Shows a scene, or the rain without a kind.
    void toonTafereel(std::optional<DrieSoort> soort);
    [[nodiscard]] MatrixRegenOpties regenOpties() const;
    // Lays black over the new picture and fades the black out.
    void toonOpkomst();

    std::unique_ptr<Tafereel> tafereel_;
    platform::Timer wisselKlok_;
    std::optional<SaverKeuze> nu_;
    std::shared_ptr<platform::Sheet> instellingen_;
    std::optional<SaverKeuze> huidige_;
    std::optional<SaverKeuze> gekozen_;  // picked in the sheet
    std::shared_ptr<Opkomst> opkomst_;
    platform::Timer maatKlok_;
    // Made at the first rotation, so that no change of scene waits for the globe's files.
    std::optional<BolVoorraad> voorraad_;
    // Whether no 3D scene can be drawn here, so that the rain takes its place.
    bool geenDrie_ = false;
    // Callbacks that may outlive the view hold this weakly.
    std::shared_ptr<BrixtelSaverView*> zelf_ = std::make_shared<BrixtelSaverView*>(this);
};

}  // namespace brixtel
