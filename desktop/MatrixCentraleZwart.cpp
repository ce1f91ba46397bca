// SPDX-License-Identifier: MIT
// The black screen of MatrixCentrale.
#include <QPainter>
#include <algorithm>
#include <iterator>
#include <utility>

#include "desktop/BeatFlits.h"
#include "desktop/MatrixCentrale.h"
#include "desktop/MatrixView.h"
#include "desktop/Schermen.h"
#include "drawing/Thema.h"
#include "platform/view/SceneView.h"
#include "platform/window/WindowSystem.h"

namespace brixtel {

using platform::Layer;
using platform::Screen;
using platform::Timer;
using platform::View;

namespace {

constexpr int kNiveau = 1001;
constexpr double kUitgaan = 0.25;           // seconds
constexpr double kZwakkeBeat = 0.15;        // strength up to which nothing flashes
constexpr double kMuziekTijd = 1.0 / 30.0;  // seconds between two readings

// The tempo that the music's level asks for, and the part of the change that the rain makes
// in one reading.
constexpr double kTraagste = 0.8;
constexpr double kPerNiveau = 3.5;
constexpr double kMeesteErbij = 1.6;
constexpr double kVolgen = 0.12;

// The hint banner, in points and seconds.
constexpr double kTipLetters = 13.0;
constexpr double kTipRuimte = 28.0;  // beside the text, both sides together
constexpr double kTipHoogte = 30.0;
constexpr double kTipOnder = 46.0;  // from the bottom of the screen
constexpr double kTipTekst = 10.0;  // from the banner's bottom to the baseline
constexpr double kTipAlfa = 0.85;
constexpr double kTipDuur = 5.0;
constexpr double kTipOp = 0.1;  // part of the duration in which the banner rises
constexpr double kTipAf = 0.8;  // part from which it fades
const QString kTip = QStringLiteral("[ beweeg de muis of druk op een toets om terug te gaan ]");

QColor metAlfa(QColor kleur, double alfa) {
    kleur.setAlphaF(static_cast<float>(alfa));
    return kleur;
}

}  // namespace

void MatrixCentrale::toonZwart(std::optional<DrieSoort> drie) {
    if (zwartAan()) return;
    const platform::WindowServer& server = bronnen_.server;
    // A system that cannot return the keyboard gives it back by itself.
    if (!server.isConnected() || server.system().capabilities().returnsKeyboard)
        vorigeApp_ = voorsteApp();
    soort_ = drie;
    if (drie && server.isConnected() && server.system().capabilities().drawsOnGpu)
        opwarming_ = std::make_unique<platform::SceneWarmUp>(server.options().drawer);
    for (const Screen& scherm : platform::distinctRectangles(bronnen_.schermen()))
        zwart_.push_back(maakZwart(scherm, Inzet::Geleidelijk));
    startKlok();
    bronnen_.werkruimte.activateIgnoringOthers();
    verbergCursor(true);
    for (const Regen& regen : regen_)
        regen.venster->setAlpha(0.0);
    if (onZwart) onZwart(true);
}

// The frontmost application. Right after a black screen closed, the workspace may name none,
// since the keyboard is on its way back. The answer is then the application that was given
// the keyboard.
std::optional<platform::RunningApplication> MatrixCentrale::voorsteApp() const {
    if (const auto app = bronnen_.werkruimte.frontmostApplication()) return app;
    const auto laatste = std::find_if(sluitend_.rbegin(), sluitend_.rend(),
                                      [](const Sluitend& s) { return s.vorigeApp.has_value(); });
    return laatste == sluitend_.rend() ? std::nullopt : laatste->vorigeApp;
}

void MatrixCentrale::sluitZwart() {
    if (!zwartAan()) return;
    Sluitend sluitend{.zwart = std::exchange(zwart_, {}),
                      .opwarming = std::move(opwarming_),
                      .vorigeApp = vorigeApp_};
    // The worlds of an earlier black screen that still fades go with that black screen.
    const auto gaatAl = [this](const DrieWereld* wereld) {
        return std::any_of(sluitend_.begin(), sluitend_.end(), [wereld](const Sluitend& eerder) {
            return std::find(eerder.werelden.begin(), eerder.werelden.end(), wereld) !=
                   eerder.werelden.end();
        });
    };
    for (const auto& wereld : drieWerelden_)
        if (!gaatAl(wereld.get())) sluitend.werelden.push_back(wereld.get());
    muziekKlok_ = Timer();
    toetsenKlok_ = Timer();
    verbergCursor(false);
    laatUitgaan(std::move(sluitend), kUitgaan);
    if (const auto app = std::exchange(vorigeApp_, std::nullopt))
        bronnen_.werkruimte.activate(*app);
    for (const Regen& regen : regen_)
        regen.venster->fadeTo(regenDekking());
    if (onZwart) onZwart(false);
}

MatrixCentrale::Zwart MatrixCentrale::maakZwart(const Screen& scherm, Inzet inzet) {
    const QRectF vlak(QPointF(0.0, 0.0), scherm.frame.size());
    Zwart zwart{.scherm = scherm};
    zwart.venster = std::make_unique<MatrixVenster>(
        bronnen_.server,
        platform::WindowOptions{
            .frame = scherm.frame,
            .opaque = true,
            .level = kNiveau,
            .collectionBehavior = platform::CanJoinAllSpaces | platform::Stationary |
                                  platform::IgnoresCycle | platform::FullScreenAuxiliary,
            .hasShadow = false,
            .staysOnTop = true});
    auto view = std::make_shared<MatrixView>(vlak, klok_, bronnen_.werkruimte);
    view->onSluit = zwak([](MatrixCentrale& c) { c.sluitZwart(); });
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(Qt::black);
    vul(zwart, *view);
    zwart.flits = std::make_shared<Layer>();
    zwart.flits->setFrame(vlak);
    zwart.flits->setBackgroundColor(beatFlitsKleur());
    zwart.flits->setOpacity(0.0);
    view->layer()->addSublayer(zwart.flits);
    view->layer()->addSublayer(tip(vlak.width(), scherm.scale));
    if (zwart.drie) {
        // The scene covers the first banner, so another one lies above it.
        auto over = std::make_shared<View>(vlak);
        over->setWantsLayer(true);
        over->layer()->addSublayer(tip(vlak.width(), scherm.scale));
        view->addSubview(std::move(over));
    }
    zwart.venster->setContentView(view);
    zwart.venster->setAlpha(inzet == Inzet::Meteen ? 1.0 : 0.0);
    zwart.venster->setFrame(scherm.frame);
    zwart.venster->showWithKeyboard();
    zwart.venster->makeFirstResponder(view.get());
    if (inzet == Inzet::Geleidelijk) zwart.venster->fadeTo(1.0);
    return zwart;
}

void MatrixCentrale::vul(Zwart& zwart, View& view) {
    zwart.tafereel = std::make_unique<Tafereel>(
        view,
        TafereelOpties{.soort = soort_,
                       .wereld = {.groot = true},
                       .regen =
                           [this, scherm = zwart.scherm] {
                               return MatrixRegenOpties{.maat = scherm.frame.size(),
                                                        .schaal = scherm.scale,
                                                        .dichtheid = dichtheid,
                                                        .snelheid = snelheid,
                                                        .doorzichtig = false,
                                                        .stil = false};
                           },
                       .bijGeenDrie = zwak([](MatrixCentrale& c) { c.geenDrie(); })},
        DrieWereldBronnen{.klok = klok_,
                          .toeval = bronnen_.toeval,
                          .wacht = bronnen_.wacht,
                          .landen = bronnen_.landen,
                          .kaart = bronnen_.kaart});
    zwart.regen = zwart.tafereel->regen();
    zwart.drie = zwart.tafereel->scn();
    zwart.wereld = zwart.tafereel->wereld().get();
    if (zwart.wereld) drieWerelden_.push_back(zwart.tafereel->wereld());
}

// A display without a drawn scene shows the rain already.
void MatrixCentrale::geenDrie() {
    const auto gevonden = std::find_if(zwart_.begin(), zwart_.end(),
                                       [](const Zwart& z) { return z.drie && !z.tafereel->scn(); });
    if (gevonden == zwart_.end()) return;
    Zwart& zwart = *gevonden;
    vergeetWereld(zwart);
    zwart.drie.reset();
    zwart.wereld = nullptr;
    zwart.regen = zwart.tafereel->regen();
    // The flash lies above the rain.
    zwart.venster->contentView()->layer()->addSublayer(zwart.flits);
}

void MatrixCentrale::vergeetWereld(const Zwart& zwart) {
    std::erase_if(drieWerelden_, [&](const auto& wereld) { return wereld.get() == zwart.wereld; });
}

std::shared_ptr<Layer> MatrixCentrale::tip(double breedte, double schaal) const {
    const QFont font = Thema::font(kTipLetters, {.vet = true});
    const double w = Thema::breedte(kTip, {.font = font}) + kTipRuimte;
    const QSizeF maat(w, kTipHoogte);
    auto laag = std::make_shared<Layer>();
    laag->setFrame({QPointF((breedte - w) / 2.0, kTipOnder), maat});
    laag->setContentsScale(schaal);
    const auto teken = [&](Tekenvlak& vlak) {
        QPainter& painter = vlak.painter();
        painter.fillRect(QRectF(QPointF(0.0, 0.0), maat), metAlfa(Qt::black, kTipAlfa));
        QPen lijn(Thema::middel(), 1.0);
        lijn.setJoinStyle(Qt::MiterJoin);
        painter.setPen(lijn);
        painter.drawRect(QRectF(0.5, 0.5, w - 1.0, kTipHoogte - 1.0));
        Thema::tekst(kTip,
                     {.font = font,
                      .kleur = Thema::groen(),
                      .op = QPointF(w / 2.0, kTipTekst),
                      .midden = true},
                     vlak);
    };
    if (const auto beeld = Thema::beeld(maat, {.schaal = schaal, .teken = teken}))
        laag->setContents(*beeld);
    laag->setOpacity(0.0);
    laag->addAnimation("tip",
                       platform::KeyframeAnimation{.keyPath = platform::KeyPath::Opacity,
                                                   .values = {0.0, 1.0, 1.0, 0.0},
                                                   .keyTimes = {0.0, kTipOp, kTipAf, 1.0},
                                                   .timing = {.duration = kTipDuur}},
                       klok_.now());
    return laag;
}

// --- music ---

void MatrixCentrale::startKlok() {
    muziekKlok_ = Timer();
    if (!opMuziek) return;
    muziekKlok_ = Timer(
        klok_, {.interval = kMuziekTijd, .repeats = true},
        [zelf = std::weak_ptr<MatrixCentrale*>(zelf_), tempo = 1.0, vorigeBeat = -1]() mutable {
            if (const auto z = zelf.lock()) (*z)->startMuziek(tempo, vorigeBeat);
        });
}

void MatrixCentrale::startMuziek(double& tempo, int& vorigeBeat) {
    if (!muziekStand) return;
    const std::optional<MuziekStand> stand = muziekStand();
    if (!stand) return;
    const double doel = kTraagste + std::min(kPerNiveau * stand->level, kMeesteErbij);
    tempo += (doel - tempo) * kVolgen;
    for (const Zwart& zwart : zwart_)
        if (zwart.regen) zwart.regen->zetTempo(static_cast<float>(tempo));
    if (stand->beat == vorigeBeat) return;
    if (vorigeBeat >= 0 && stand->sterkte > kZwakkeBeat) flits(stand->sterkte);
    vorigeBeat = stand->beat;
}

void MatrixCentrale::flits(double sterkte) {
    if (flitsDeel <= 0.0) return;
    platform::BasicAnimation uitdoven = beatFlits(sterkte);
    uitdoven.from *= flitsDeel;
    for (const Zwart& zwart : zwart_)
        zwart.flits->addAnimation("beat", uitdoven, klok_.now());
}

// --- displays ---

void MatrixCentrale::volgZwart(const std::vector<Screen>& schermen) {
    // Windows of removed displays are dropped last. Until another window has the keyboard,
    // the desktop below would get the keys.
    const auto eersteWeg = std::stable_partition(
        zwart_.begin(), zwart_.end(), [&](const Zwart& z) { return blijft(z, schermen); });
    const std::vector<Zwart> weg(std::make_move_iterator(eersteWeg),
                                 std::make_move_iterator(zwart_.end()));
    zwart_.erase(eersteWeg, zwart_.end());
    for (const Screen& scherm : schermen) {
        if (verplaats(zwart_, scherm)) continue;
        zwart_.push_back(maakZwart(scherm, Inzet::Meteen));
    }
    const platform::Window* const metToetsen = bronnen_.server.keyWindow();
    const bool gaat = std::any_of(weg.begin(), weg.end(),
                                  [=](const Zwart& z) { return z.venster.get() == metToetsen; });
    if (gaat || !metToetsen) zwart_.back().venster->takeKeyboard();
    for (const Zwart& zwart : weg)
        vergeetWereld(zwart);
}

}  // namespace brixtel
