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
constexpr double kOvergang = 1.0 / 3.0;
// The time in seconds after which every drop of a new rain has begun to fall.
constexpr double kAlGaande = 60.0;
// The lowest speed of a rain; a lower one counts as this.
constexpr double kLangzaamst = 0.2;

// The ratio of the wanted speed to the speed that the rain was made with.
float tempo(double gemaakt, double gewenst) {
    return static_cast<float>(std::max(gewenst, kLangzaamst) / std::max(gemaakt, kLangzaamst));
}

// Fades a rain's layer from one opacity to another. The layer's own time may run faster than
// the clock.
void laatVervagen(platform::Layer& laag, double van, double tot, double nu) {
    laag.setOpacity(tot);
    laag.addAnimation(
        "overgang",
        platform::BasicAnimation{.keyPath = platform::KeyPath::Opacity,
                                 .from = van,
                                 .to = tot,
                                 .timing = {.duration = kOvergang * laag.time().speed}},
        nu);
}

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
    overgangKlok_ = {};
    laatUitgaan({.regen = std::exchange(regen_, {})}, kUitgaan);
    werkRegenBij();
}

std::unique_ptr<MatrixRegen> MatrixCentrale::maakDoorzichtig(const Screen& scherm) {
    return std::make_unique<MatrixRegen>(MatrixRegenOpties{.maat = scherm.frame.size(),
                                                           .schaal = scherm.scale,
                                                           .dichtheid = dichtheid,
                                                           .snelheid = snelheid,
                                                           .doorzichtig = true,
                                                           .stil = false},
                                         klok_, bronnen_.toeval);
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
    regen.regen = maakDoorzichtig(scherm);
    regen.dichtheid = dichtheid;
    regen.snelheid = snelheid;
    view->layer()->addSublayer(regen.regen->laag());
    regen.venster->setContentView(std::move(view));
    regen.venster->setAlpha(0.0);
    zetVrij(regen);
    return regen;
}

void MatrixCentrale::pasRegenAan() {
    for (const Regen& regen : regen_) {
        const float nieuw = tempo(regen.snelheid, snelheid);
        if (regen.regen->laag()->time().speed != static_cast<double>(nieuw))
            regen.regen->zetTempo(nieuw);
    }
    // A running cross-fade ends first; rondOvergangAf() then looks again.
    if (overgangKlok_.isValid()) return;
    bool anders = false;
    for (Regen& regen : regen_)
        if (regen.dichtheid != dichtheid) {
            vervaag(regen);
            anders = true;
        }
    if (!anders) return;
    overgangKlok_ = platform::Timer(klok_, {.interval = kOvergang}, [this] { rondOvergangAf(); });
    werkRegenBij();
}

void MatrixCentrale::vervaag(Regen& regen) {
    const double nu = klok_.now();
    regen.oud = std::exchange(regen.regen, maakDoorzichtig(regen.scherm));
    regen.dichtheid = dichtheid;
    regen.snelheid = snelheid;
    const auto& laag = regen.regen->laag();
    laag->setTime({.beginTime = nu, .timeOffset = nu + kAlGaande, .speed = 1.0});
    regen.venster->contentView()->layer()->addSublayer(laag);
    laatVervagen(*regen.oud->laag(), 1.0, 0.0, nu);
    laatVervagen(*laag, 0.0, 1.0, nu);
}

void MatrixCentrale::rondOvergangAf() {
    overgangKlok_ = {};
    for (Regen& regen : regen_) {
        if (!regen.oud) continue;
        regen.oud->laag()->removeFromSuperlayer();
        regen.oud.reset();
    }
    werkRegenBij();
    pasRegenAan();
}

void MatrixCentrale::laatLezen(const QRectF& vlak) {
    if (vlak == lezen_) return;
    const double eerst = regenDekking();
    lezen_ = vlak;
    for (const Regen& regen : regen_)
        zetVrij(regen);
    if (zwartAan() || regenDekking() == eerst) return;
    for (const Regen& regen : regen_)
        if (regen.venster->isVisible()) regen.venster->fadeTo(regenDekking());
}

bool MatrixCentrale::kentPlaatsen() const {
    return bronnen_.server.system().capabilities().placesWindows;
}

// The opacity of a rain that nothing hides.
double MatrixCentrale::regenDekking() const {
    return lezen_.isEmpty() || kentPlaatsen() ? 1.0 : kGedimd;
}

// The rain shows in four bands around the window to be read.
void MatrixCentrale::zetVrij(const Regen& regen) const {
    const QRectF scherm = regen.scherm.frame;
    const QRectF vrij = (lezen_ & scherm).translated(-scherm.topLeft());
    const auto& laag = regen.venster->contentView()->layer();
    if (vrij.isEmpty() || !kentPlaatsen()) return laag->setMask(nullptr);
    const double breed = scherm.width(), hoog = scherm.height();
    auto masker = std::make_shared<platform::Layer>();
    masker->setFrame({0.0, 0.0, breed, hoog});
    for (const QRectF& band :
         {QRectF(0.0, 0.0, breed, vrij.top()), QRectF(0.0, vrij.top(), vrij.left(), vrij.height()),
          QRectF(vrij.right(), vrij.top(), breed - vrij.right(), vrij.height()),
          QRectF(0.0, vrij.bottom(), breed, hoog - vrij.bottom())}) {
        auto stuk = std::make_shared<platform::Layer>();
        stuk->setFrame(band);
        stuk->setBackgroundColor(Qt::white);
        masker->addSublayer(std::move(stuk));
    }
    laag->setMask(std::move(masker));
}

void MatrixCentrale::toonRegenVenster(Regen& regen) {
    regen.venster->setAlpha(0.0);
    regen.venster->setFrame(regen.scherm.frame);
    regen.venster->show();
    Bovenlaag::zet(*regen.venster);
    if (!zwartAan()) regen.venster->fadeTo(regenDekking());
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
    if (!bronnen_.werkruimte.isComposited()) return RegenStand::geenCompositor;
    const bool leeg = regen_.front().dichtheid <= 0.0 && !overgangKlok_.isValid();
    return leeg ? RegenStand::leeg : RegenStand::aan;
}

void MatrixCentrale::werkRegenBij() {
    const RegenStand stand = watRegenMag();
    for (Regen& regen : regen_) {
        const bool zichtbaar = regen.venster->isVisible();
        if (stand == RegenStand::aan && !zichtbaar)
            toonRegenVenster(regen);
        else if (stand != RegenStand::aan && zichtbaar)
            regen.venster->hide();
    }
    if (stand_.waarde() != stand) stand_.zet(stand);
}

void MatrixCentrale::volgRegen(const std::vector<Screen>& schermen) {
    std::erase_if(regen_, [&](const Regen& regen) { return !blijft(regen, schermen); });
    for (const Screen& scherm : schermen)
        if (!verplaats(regen_, scherm)) regen_.push_back(maakRegen(scherm));
    for (const Regen& regen : regen_)
        zetVrij(regen);
    werkRegenBij();
}

}  // namespace brixtel
