// SPDX-License-Identifier: MIT
#include "hosts/saver/Voorstelling.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

#include "BrixtelSaver/SaverInstellingen.h"
#include "hosts/saver/BeeldTeller.h"
#include "hosts/saver/WerkGrens.h"
#include "platform/session/Preferences.h"
#include "platform/time/ProcessUsage.h"
#include "platform/time/Queue.h"
#include "platform/window/WindowSystem.h"

namespace brixtel {

using platform::Screen;
using platform::Window;

namespace {
const QLatin1String kStopt("com.apple.screensaver.willstop");
}  // namespace

Voorstelling::Voorstelling(const Opdracht& opdracht, const ModuleLader& module,
                           platform::WindowServer& server,
                           const platform::ScreenSaverContext& context, const QString& bus)
    : opdracht_(opdracht),
      module_(module),
      server_(server),
      context_(context),
      // The sheet's process runs this same program.
      instellingen_(QCoreApplication::applicationFilePath(), bus) {
    switch (opdracht.taak) {
        case Opdracht::Taak::Venster:
            toonVenster();
            break;
        case Opdracht::Taak::Gastheer:
            toonBijGastheer();
            break;
        default:
            begrens(Screen::main().value_or(Screen{}).frame.size());
            volgSchermen();
            schermen_ = std::make_unique<platform::ScreenObserver>([this] { volgSchermen(); });
    }
    if (opdracht.taak == Opdracht::Taak::Gastheer) return;
    // The views stop themselves at this notification, and only this program restarts them.
    context_.notifications.addObserver(this, kStopt, [this] {
        herstartKlok_ = platform::Timer(server_.clock(), {.interval = 0.0}, [this] { begin(); });
    });
}

Voorstelling::~Voorstelling() {
    zelf_.reset();
    context_.notifications.removeObserver(this);
    schermen_.reset();
    for (const Doek& doek : doeken_)
        doek.view->saver()->stopAnimation();
}

void Voorstelling::einde() {
    if (onEinde_) onEinde_();
}

void Voorstelling::begin() {
    for (const Doek& doek : doeken_) {
        doek.view->saver()->stopAnimation();
        doek.view->saver()->startAnimation();
    }
}

void Voorstelling::toonInstellingen(const Window& bij) {
    if (instellingen_.isOpen()) return;
    bladIsOpen(true);
    QStringList argumenten{QStringLiteral("--instellingen")};
    if (!bij.reference().isEmpty())
        argumenten << QStringLiteral("--boven=%1").arg(bij.reference().text);
    instellingen_.toon(argumenten, [this](const InstellingenProces::Afloop& afloop) {
        bladIsOpen(false);
        if (afloop.goed && !afloop.gekozen.isEmpty()) neemKeuze(afloop.gekozen);
    });
}

void Voorstelling::neemKeuze(const QString& keuze) {
    const QString sleutel = QStringLiteral("keuze");
    // The user's pick replaces a choice that the command line gave for this run.
    platform::Preferences::clearArgument(sleutel);
    for (const Doek& doek : doeken_)
        doek.view->saver()->takePick(keuze);
    // The pick holds for this run where the store cannot be written.
    if (ruweWaarde(SaverInstellingen::keuze()) != keuze)
        platform::Preferences::setArgument(sleutel, keuze);
}

void Voorstelling::bladIsOpen(bool open) {
    for (const Doek& doek : doeken_) {
        doek.view->setMuisTelt(!open);
        if (opdracht_.taak != Opdracht::Taak::Schermvullend) continue;
        doek.venster->setCursorHidden(!open);
        if (!doek.venster->reference().isEmpty()) continue;
        // The sheet cannot be placed above such a window, which would hide it.
        if (open)
            doek.venster->hide();
        else
            doek.venster->showWithKeyboard();
    }
}

platform::WindowStatistics Voorstelling::stand() const {
    return doeken_.empty() ? platform::WindowStatistics{} : doeken_.front().venster->statistics();
}

void Voorstelling::vul(Doek& doek, const QRectF& vlak, bool voorvertoning) {
    doek.view = std::make_shared<HostView>(
        module_.maak(vlak, voorvertoning, context_),
        [&systeem = server_.system()] { return HostView::Indeling::van(systeem); });
    doek.venster->onClose([this] { einde(); });
    doek.venster->setContentView(doek.view);
    if (opdracht_.fps)
        doek.view->addSubview(
            std::make_shared<BeeldTeller>(server_.clock(), doek.view->bounds().height()));
    if (opdracht_.taak == Opdracht::Taak::Venster) volgTitel(doek);
    doek.view->saver()->startAnimation();
}

void Voorstelling::volgTitel(Doek& doek) {
    doek.view->saver()->onShown([this, eerste = doek.venster.get()](const QString& naam) {
        titel_ = naam;
        (doeken_.empty() ? eerste : doeken_.front().venster.get())->setTitle(naam);
    });
}

void Voorstelling::toonOp(const Screen& scherm) {
    Doek doek{.scherm = scherm,
              .venster = std::make_unique<Window>(
                  server_, platform::WindowOptions{.frame = scherm.frame,
                                                   .style = platform::WindowStyle::FullScreen,
                                                   .title = QStringLiteral("Brixtel")}),
              .view = nullptr};
    doek.venster->setCursorHidden(true);
    // The window system makes the black window, and the render thread its memory, while this
    // thread makes the scene.
    doek.venster->showWithKeyboard();
    vul(doek, {QPointF(0, 0), scherm.frame.size()}, opdracht_.voorvertoning);
    doek.view->onInvoer([this] { einde(); });
    doek.view->onInstellingen([this, venster = doek.venster.get()] { toonInstellingen(*venster); });
    doek.venster->makeFirstResponder(doek.view.get());
    doeken_.push_back(std::move(doek));
}

void Voorstelling::volgSchermen() {
    const std::vector<Screen> schermen = platform::distinctRectangles(Screen::all());
    std::erase_if(doeken_, [&](const Doek& doek) {
        if (std::find(schermen.begin(), schermen.end(), doek.scherm) != schermen.end())
            return false;
        doek.view->saver()->stopAnimation();
        return true;
    });
    for (const Screen& scherm : schermen) {
        const bool bedekt = std::any_of(doeken_.begin(), doeken_.end(),
                                        [&](const Doek& doek) { return doek.scherm == scherm; });
        if (!bedekt) toonOp(scherm);
    }
}

void Voorstelling::maakVenster(Doek& doek, platform::WindowStyle stijl, const QRectF& frame) {
    doek.venster = std::make_unique<Window>(
        server_, platform::WindowOptions{.frame = frame, .style = stijl, .title = titel_});
    doek.venster->onClose([this] { einde(); });
}

void Voorstelling::toonVenster() {
    const QSizeF maat(opdracht_.venster);
    const auto scherm = Screen::main();
    const QPointF midden = scherm ? scherm->frame.center() : QPointF(0, 0);
    const QPointF hoek = midden - QPointF(maat.width() / 2.0, maat.height() / 2.0);
    begrens(maat);
    Doek doek;
    titel_ = naam(SaverInstellingen::keuze());
    maakVenster(doek, platform::WindowStyle::Titled, QRectF(hoek, maat));
    doek.venster->showWithKeyboard();
    vul(doek, {QPointF(0, 0), maat}, opdracht_.voorvertoning);
    volgMaat(*doek.view);
    doek.view->onInstellingen([this] { toonInstellingen(*doeken_.front().venster); });
    const auto wissel = [this] {
        straksAls(volledig_ ? platform::WindowStyle::Titled : platform::WindowStyle::FullScreen);
    };
    doek.view->inEigenVenster(server_.clock(),
                              {.volledig = wissel,
                               .terug = [this, wissel] { volledig_ ? wissel() : einde(); },
                               .sluit = [this] { einde(); }});
    doek.venster->makeFirstResponder(doek.view.get());
    doeken_.push_back(std::move(doek));
}

// The asking window is handling its own event, so the change waits for a later turn.
void Voorstelling::straksAls(platform::WindowStyle stijl) {
    platform::runOnMainQueue([zelf = std::weak_ptr<Voorstelling*>(zelf_), stijl] {
        const auto deze = zelf.lock();
        if (!deze) return;
        Voorstelling& v = **deze;
        const bool naarVol = stijl == platform::WindowStyle::FullScreen;
        if (v.doeken_.empty() || naarVol == v.volledig_) return;
        Doek& doek = v.doeken_.front();
        const auto scherm = doek.venster->screen();
        if (naarVol && !scherm) return;
        if (naarVol) v.eigenFrame_ = doek.venster->frame();
        // The old window goes after the new one is shown, so that the desktop is never seen.
        const auto oud = std::move(doek.venster);
        oud->setContentView(std::make_shared<platform::View>(doek.view->bounds()));
        const QRectF frame = naarVol ? scherm->frame : v.eigenFrame_;
        v.maakVenster(doek, stijl, frame);
        doek.venster->setContentView(doek.view);
        doek.venster->setCursorHidden(naarVol);
        doek.venster->showWithKeyboard();
        doek.venster->makeFirstResponder(doek.view.get());
        v.volledig_ = naarVol;
    });
}

void Voorstelling::begrens(QSizeF maat) {
    const auto grens = werkGrens(opdracht_, maat);
    if (std::exchange(grens_, grens) != grens)
        server_.limitWork(grens, platform::processCpuSeconds);
}

void Voorstelling::volgMaat(HostView& view) {
    view.onMaat([zelf = std::weak_ptr<Voorstelling*>(zelf_)](QSizeF maat) {
        platform::runOnMainQueue([zelf, maat] {
            if (const auto deze = zelf.lock()) (*deze)->begrens(maat);
        });
    });
}

void Voorstelling::toonBijGastheer() {
    Doek doek{.scherm = {},
              .venster = std::make_unique<Window>(
                  server_, opdracht_.vensterId.value_or(platform::HostRef{})),
              .view = nullptr};
    const QSizeF maat = doek.venster->frame().size();
    zonderVenster_ = maat.isEmpty();
    begrens(maat);
    vul(doek, {QPointF(0, 0), maat}, opdracht_.voorvertoning || isVoorbeeld(maat));
    volgMaat(*doek.view);
    doek.venster->show();
    doeken_.push_back(std::move(doek));
}

}  // namespace brixtel
