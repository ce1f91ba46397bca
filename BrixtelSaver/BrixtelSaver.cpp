// SPDX-License-Identifier: MIT
#include "BrixtelSaver/BrixtelSaver.h"

#include <QPainter>
#include <cmath>
#include <vector>

#include "BrixtelSaver/InstellingenModule.h"
#include "BrixtelSaver/Opkomst.h"
#include "BrixtelSaver/SaverInstellingen.h"
#include "platform/window/Screen.h"
#include "platform/window/Window.h"

namespace brixtel {

namespace {

constexpr double kWisselTijd = 60.0;  // seconds
// The preview's frames per second.
constexpr int kBeeldenKlein = 30;
// A window that is dragged larger gets its new rain this long after its last change of
// size.
constexpr double kMaatRust = 0.15;
// Where a display's scale is not whole, a window learns its exact size in points only when
// it is shown; until then the size is rounded by at most this.
constexpr double kAfronding = 1.0;

bool isOngeveer(QSizeF een, QSizeF ander) {
    return std::abs(een.width() - ander.width()) < kAfronding &&
           std::abs(een.height() - ander.height()) < kAfronding;
}

const QLatin1String kStopt("com.apple.screensaver.willstop");

}  // namespace

BrixtelSaverView::BrixtelSaverView(const QRectF& frame, bool isPreview,
                                   const platform::ScreenSaverContext& context)
    : ScreenSaverView(frame, isPreview, context) {
    setWantsLayer(true);
    layer()->setBackgroundColor(Qt::black);
    setAnimationTimeInterval(1.0);
    context.notifications.addObserver(this, kStopt, [this] { stopt(); });
}

BrixtelSaverView::~BrixtelSaverView() {
    context().notifications.removeObserver(this);
}

void BrixtelSaverView::startAnimation() {
    ScreenSaverView::startAnimation();
    toon(SaverInstellingen::keuze());
}

void BrixtelSaverView::stopAnimation() {
    ScreenSaverView::stopAnimation();
    stopKlok();
    weg();
}

void BrixtelSaverView::stopt() {
    stopKlok();
    weg();
}

void BrixtelSaverView::stopKlok() {
    wisselKlok_ = platform::Timer();
}

void BrixtelSaverView::draw(QPainter& painter, const QRectF& dirty) {
    painter.fillRect(dirty, Qt::black);
}

std::shared_ptr<platform::Sheet> BrixtelSaverView::configureSheet() {
    instellingen_ =
        maakInstellingenVenster([zelf = std::weak_ptr<BrixtelSaverView*>(zelf_)](SaverKeuze keuze) {
            const auto view = zelf.lock();
            if (!view) return SaverInstellingen::zetKeuze(keuze);
            (*view)->gekozen_ = keuze;
            (*view)->kies(keuze);
        });
    return instellingen_;
}

void BrixtelSaverView::kies(SaverKeuze keuze) {
    SaverInstellingen::zetKeuze(keuze);
    if (nu_) toon(keuze);
}

QString BrixtelSaverView::pickedInSheet() const {
    return gekozen_ ? ruweWaarde(*gekozen_) : QString();
}

void BrixtelSaverView::takePick(const QString& pick) {
    if (const auto keuze = keuzeUitRuw(pick)) kies(*keuze);
}

std::shared_ptr<platform::Sheet> BrixtelSaverView::maakInstellingenVenster(Klaar klaar) {
    InstellingenModule* const module = InstellingenModule::laad();
    return module ? module->maak(std::move(klaar)) : nullptr;
}

void BrixtelSaverView::toon(SaverKeuze keuze) {
    stopKlok();
    weg();
    nu_ = keuze;
    if (keuze != SaverKeuze::wisselend) {
        laat(keuze);
        return;
    }
    // The first scene may be the one shown before; only a tick never repeats a scene.
    const SaverKeuze eerste = alleScenes.at(context().random.below(alleScenes.size()));
    wisselKlok_ = platform::Timer(context().clock, {.interval = kWisselTijd, .repeats = true},
                                  [this] { wissel(); });
    laat(eerste);
    if (!voorraad_) voorraad_.emplace().leesKaart();
}

void BrixtelSaverView::wissel() {
    std::vector<SaverKeuze> kandidaten;
    for (const SaverKeuze scene : alleScenes)
        if (scene != huidige_) kandidaten.push_back(scene);
    laat(kandidaten[context().random.below(static_cast<std::uint32_t>(kandidaten.size()))]);
}

void BrixtelSaverView::laat(SaverKeuze keuze) {
    const bool regent = keuze == SaverKeuze::regen || geenDrie_;
    const bool eerste = !huidige_;
    // Rain that stands in for every scene goes on.
    if (!regent || !regen()) weg();
    huidige_ = keuze;
    if (regen()) return;
    const auto soort = soortUitRuw(ruweWaarde(keuze));
    tellShown(naam(regent ? SaverKeuze::regen : keuze));
    if (regent)
        toonTafereel(std::nullopt);
    else if (soort)
        toonTafereel(soort);
    if (!eerste) toonOpkomst();
}

void BrixtelSaverView::zonderDrie() {
    geenDrie_ = true;
    tellShown(naam(SaverKeuze::regen));
}

void BrixtelSaverView::toonOpkomst() {
    opkomst_ = std::make_shared<Opkomst>(bounds(), context().clock);
    opkomst_->setAutoresizingMask(WidthSizable | HeightSizable);
    addSubview(opkomst_);
}

MatrixRegenOpties BrixtelSaverView::regenOpties() const {
    const auto scherm = platform::Screen::main();
    const double schaal = window() ? window()->backingScaleFactor() : scherm ? scherm->scale : 2.0;
    return {.maat = bounds().size(),
            .schaal = schaal,
            .dichtheid = 0.7,
            .snelheid = 1.0,
            .doorzichtig = false,
            .stil = false};
}

void BrixtelSaverView::toonTafereel(std::optional<DrieSoort> soort) {
    tafereel_ = std::make_unique<Tafereel>(
        *this,
        TafereelOpties{.soort = soort,
                       .wereld = {.groot = !isPreview(), .rustig = false, .eigenLijnen = false},
                       .regen = [this] { return regenOpties(); },
                       .bijGeenDrie = [this] { zonderDrie(); }},
        DrieWereldBronnen{.klok = context().clock, .toeval = context().random});
    if (isPreview() && scn()) scn()->setPreferredFramesPerSecond(kBeeldenKlein);
}

void BrixtelSaverView::weg() {
    maatKlok_ = platform::Timer();
    if (opkomst_) opkomst_->removeFromSuperview();
    opkomst_.reset();
    tafereel_.reset();
}

void BrixtelSaverView::setFrame(const QRectF& frame) {
    ScreenSaverView::setFrame(frame);
    if (!regen() || isOngeveer(bounds().size(), regen()->laag()->frame().size())) return;
    maatKlok_ = platform::Timer(context().clock, {.interval = kMaatRust},
                                [this] { tafereel_->vernieuwRegen(); });
}

}  // namespace brixtel
