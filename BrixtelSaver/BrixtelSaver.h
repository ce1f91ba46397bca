// SPDX-License-Identifier: MIT
#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "BrixtelSaver/SaverKeuze.h"
#include "platform/time/Timer.h"
#include "platform/view/ScreenSaverView.h"
#include "tafereel/Tafereel.h"

namespace brixtel {

class Opkomst;

// The saver's principal view: a black surface that shows one scene at a time,
// and in the rotating mode another one every minute, which comes up out of black. Scenes move
// themselves; the view draws nothing but black. Main thread.
class BrixtelSaverView : public platform::ScreenSaverView {
  public:
    BrixtelSaverView(const QRectF& frame, bool isPreview,
                     const platform::ScreenSaverContext& context);
    ~BrixtelSaverView() override;

    // Shows the stored choice.
    void startAnimation() override;
    void stopAnimation() override;

    // The rain is built for one size: a new size builds it anew.
    void setFrame(const QRectF& frame) override;

    // For a host that skips what lies behind an opaque view.
    [[nodiscard]] bool isOpaque() const override { return true; }
    void draw(QPainter& painter, const QRectF& dirty) override;

    [[nodiscard]] bool hasConfigureSheet() const override { return true; }
    // A new sheet each time, kept until the next is asked for. What is picked in
    // it is stored, and shown at once by a view that was ever started. None in a
    // program without a QApplication.
    std::shared_ptr<platform::Sheet> configureSheet() override;
    [[nodiscard]] QString pickedInSheet() const override;
    void takePick(const QString& pick) override;

    // What is up now. At most one scene is; `nu` and `huidige` keep their last
    // value when it is taken down.
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
    // The mode last asked for; none until first started.
    [[nodiscard]] std::optional<SaverKeuze> nu() const { return nu_; }
    // The scene last shown; never the rotating mode.
    [[nodiscard]] std::optional<SaverKeuze> huidige() const { return huidige_; }

  protected:
    using Klaar = std::function<void(SaverKeuze)>;
    // Makes the sheet that calls `klaar` with the user's pick.
    virtual std::shared_ptr<platform::Sheet> maakInstellingenVenster(Klaar klaar);

  private:
    void kies(SaverKeuze keuze);
    void toon(SaverKeuze keuze);
    void laat(SaverKeuze keuze);
    void wissel();
    void weg();
    void stopt();
    void stopKlok();

    // None is the rain.
    void toonTafereel(std::optional<DrieSoort> soort);
    [[nodiscard]] MatrixRegenOpties regenOpties() const;
    // Lays black over the new picture, which fades.
    void toonOpkomst();

    std::unique_ptr<Tafereel> tafereel_;
    platform::Timer wisselKlok_;
    std::optional<SaverKeuze> nu_;
    std::shared_ptr<platform::Sheet> instellingen_;
    std::optional<SaverKeuze> huidige_;
    std::optional<SaverKeuze> gekozen_;  // in the sheet
    std::shared_ptr<Opkomst> opkomst_;
    platform::Timer nieuweMaat_;
    // Nothing here can draw a 3D scene: it rains in its place.
    bool geenDrie_ = false;
    // Tells callbacks that outlive the view that it is gone.
    std::shared_ptr<BrixtelSaverView*> zelf_ = std::make_shared<BrixtelSaverView*>(this);
};

}  // namespace brixtel
