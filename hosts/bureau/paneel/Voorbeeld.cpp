// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/Voorbeeld.h"

#include <utility>

#include "hosts/bureau/paneel/VoorbeeldVlak.h"

namespace brixtel {

using platform::View;

namespace {
constexpr double kSamennemen = 0.15;  // seconds, while a slider is dragged
}

Voorbeeld::Voorbeeld(platform::WindowServer& server, platform::RandomSource& toeval)
    : server_(server), toeval_(toeval), andereRegen_(server.clock(), kSamennemen, [this] {
          tafereel_->vernieuwRegen();
          zetSnelheid();
      }) {}

Voorbeeld::~Voorbeeld() {
    weg();
}

void Voorbeeld::toon(QQuickItem& in, const QRect& plek, const Inhoud& inhoud) {
    if (plek.isEmpty() || !server_.isConnected()) return weg();
    const bool nieuw = !vak_ || vak_->parentItem() != &in;
    if (nieuw) {
        weg();
        vak_ = std::make_unique<VoorbeeldVlak>(in);
    }
    const bool andereMaat = vak_->size() != QSizeF(plek.size());
    vak_->zetPlek(plek);
    if (nieuw) venster_ = std::make_unique<platform::Window>(server_, vak_->plek());
    const Inhoud voor = std::exchange(inhoud_, inhoud);
    if (nieuw || inhoud.soort != voor.soort) return vul();
    // A scene resizes itself; size and density concern the rain alone.
    if (!tafereel_->regen()) return;
    if (andereMaat || inhoud.dichtheid != voor.dichtheid) andereRegen_.vraag();
    if (inhoud.snelheid != voor.snelheid) zetSnelheid();
}

void Voorbeeld::weg() {
    andereRegen_.vergeet();
    venster_.reset();
    tafereel_.reset();
    view_.reset();
    vak_.reset();
}

void Voorbeeld::vul() {
    andereRegen_.vergeet();
    const QRectF vlak(QPointF(0.0, 0.0), vak_->size());
    auto view = std::make_shared<View>(vlak);
    view->setWantsLayer(true);
    view->layer()->setBackgroundColor(Qt::black);
    auto tafereel =
        std::make_unique<Tafereel>(*view,
                                   TafereelOpties{.soort = inhoud_.soort,
                                                  .wereld = {.groot = false, .rustig = true},
                                                  .regen = [this] { return regenOpties(); },
                                                  .bijGeenDrie = [this] { zetSnelheid(); }},
                                   DrieWereldBronnen{.klok = server_.clock(), .toeval = toeval_});
    venster_->setContentView(view);
    // The previous content is dropped here.
    tafereel_ = std::move(tafereel);
    view_ = std::move(view);
    zetSnelheid();
}

MatrixRegenOpties Voorbeeld::regenOpties() const {
    return {.maat = vak_->size(),
            .schaal = vak_->plek().measures().scale,
            .dichtheid = inhoud_.dichtheid};
}

// The rain changes its tempo while it falls. A rain made for that speed would fall alike.
void Voorbeeld::zetSnelheid() {
    if (MatrixRegen* const regen = tafereel_->regen())
        regen->zetTempo(static_cast<float>(inhoud_.snelheid));
}

}  // namespace brixtel
