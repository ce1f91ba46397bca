// SPDX-License-Identifier: MIT
// The desktop rain of MatrixCentrale.
#include <algorithm>
#include <utility>

#include "desktop/Bovenlaag.h"
#include "desktop/MatrixCentrale.h"
#include "desktop/Schermen.h"
#include "platform/window/WindowSystem.h"

namespace brixtel {

using platform::Screen;
using platform::View;
using platform::Window;

namespace {

constexpr int kNiveau = 1000;
constexpr double kUitgaan = 0.4;

}  // namespace

void MatrixCentrale::toonRegen() {
    if (regenAan()) return;
    if (const auto beletsel = regenBeletsel()) return stand_.zet(*beletsel);
    for (const Screen& scherm : platform::distinctRectangles(bronnen_.schermen()))
        regen_.push_back(maakRegen(scherm));
    werkRegenBij();
}

void MatrixCentrale::sluitRegen() {
    if (!regenAan()) {
        if (stand_.waarde() != RegenStand::uit) stand_.zet(RegenStand::uit);
        return;
    }
    laatUitgaan({.regen = std::exchange(regen_, {})}, kUitgaan);
    werkRegenBij();
}

MatrixCentrale::Regen MatrixCentrale::maakRegen(const Screen& scherm) {
    Regen regen{.scherm = scherm};
    regen.venster = std::make_unique<Window>(
        bronnen_.server,
        platform::WindowOptions{
            .frame = scherm.frame,
            .opaque = false,
            .level = kNiveau,
            .collectionBehavior = platform::CanJoinAllSpaces | platform::Stationary |
                                  platform::IgnoresCycle | platform::FullScreenAuxiliary,
            .hasShadow = false});
    regen.venster->setIgnoresMouseEvents(true);
    auto view = std::make_shared<View>(QRectF(QPointF(0.0, 0.0), scherm.frame.size()));
    view->setWantsLayer(true);
    regen.regen = std::make_unique<MatrixRegen>(MatrixRegenOpties{.maat = scherm.frame.size(),
                                                                  .schaal = scherm.scale,
                                                                  .dichtheid = dichtheid,
                                                                  .snelheid = snelheid,
                                                                  .doorzichtig = true,
                                                                  .stil = false},
                                                klok_, bronnen_.toeval);
    view->layer()->addSublayer(regen.regen->laag());
    regen.venster->setContentView(std::move(view));
    regen.venster->setAlpha(0.0);
    return regen;
}

void MatrixCentrale::toonRegenVenster(Regen& regen) {
    regen.venster->setAlpha(0.0);
    regen.venster->setFrame(regen.scherm.frame);
    regen.venster->orderFront();
    Bovenlaag::zet(*regen.venster);
    if (!zwartAan()) regen.venster->fadeTo(1.0);
}

std::optional<RegenStand> MatrixCentrale::regenBeletsel() const {
    const platform::WindowServer& server = bronnen_.server;
    if (!server.isConnected()) return std::nullopt;
    const platform::Capabilities kan = server.system().capabilities();
    if (!kan.liesAboveAll) return RegenStand::geenBovenlaag;
    if (!kan.passesClicks) return RegenStand::geenDoorklik;
    return std::nullopt;
}

bool MatrixCentrale::isRegenGeweigerd() const {
    return stand_.waarde() == RegenStand::geenBovenlaag ||
           stand_.waarde() == RegenStand::geenDoorklik;
}

RegenStand MatrixCentrale::watRegenMag() const {
    // A refusal stands until the rain is closed.
    if (!regenAan()) return isRegenGeweigerd() ? stand_.waarde() : RegenStand::uit;
    if (bronnen_.werkruimte.isSaverActive()) return RegenStand::schermbeveiliging;
    return bronnen_.werkruimte.isComposited() ? RegenStand::aan : RegenStand::geenCompositor;
}

void MatrixCentrale::werkRegenBij() {
    const RegenStand stand = watRegenMag();
    for (Regen& regen : regen_) {
        const bool zichtbaar = regen.venster->isVisible();
        if (stand == RegenStand::aan && !zichtbaar)
            toonRegenVenster(regen);
        else if (stand != RegenStand::aan && zichtbaar)
            regen.venster->orderOut();
    }
    if (stand_.waarde() != stand) stand_.zet(stand);
}

void MatrixCentrale::volgRegen(const std::vector<Screen>& schermen) {
    std::erase_if(regen_, [&](const Regen& regen) { return !blijft(regen, schermen); });
    for (const Screen& scherm : schermen)
        if (!verplaats(regen_, scherm)) regen_.push_back(maakRegen(scherm));
    werkRegenBij();
}

}  // namespace brixtel
