// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/Voorbeeld.h"

#include <utility>

#include "platform/window/WindowSystem.h"

namespace brixtel {

using platform::View;

namespace {
constexpr double kSamennemen = 0.15;  // seconds, while a slider is dragged
}

Voorbeeld::Voorbeeld(platform::WindowServer& server, platform::RandomSource& toeval)
    : server_(server), toeval_(toeval), andereRegen_(server.clock(), kSamennemen, [this] {
          regen_->laag()->removeFromSuperlayer();
          vulRegen();
      }) {}

Voorbeeld::~Voorbeeld() {
    weg();
}

void Voorbeeld::toon(QWindow& in, const QRect& plek, const Wat& wat) {
    if (plek.isEmpty() || !server_.isConnected() || !server_.system().capabilities().adoptsHosts)
        return weg();
    const bool nieuw = !vak_ || vak_->parent() != &in;
    if (nieuw) {
        weg();
        vak_ = std::make_unique<QWindow>(&in);
        vak_->setFlag(Qt::WindowTransparentForInput);
        vak_->setGeometry(plek);
        vak_->show();
        venster_ = std::make_unique<platform::Window>(server_, server_.system().hostRefOf(*vak_));
    }
    const bool andereMaat = vak_->size() != plek.size();
    vak_->setGeometry(plek);
    const Wat voor = std::exchange(wat_, wat);
    if (nieuw || wat.soort != voor.soort) return vul();
    // A scene fills its window by itself, and has nothing of the rain's.
    if (!regen_) return;
    if (andereMaat || wat.dichtheid != voor.dichtheid) andereRegen_.vraag();
    if (wat.snelheid != voor.snelheid) zetSnelheid();
}

void Voorbeeld::weg() {
    andereRegen_.vergeet();
    venster_.reset();
    view_.reset();
    regen_.reset();
    wereld_.reset();
    vak_.reset();
}

void Voorbeeld::vul() {
    const QRectF vlak(QPointF(0.0, 0.0), QSizeF(vak_->size()));
    view_ = std::make_shared<View>(vlak);
    view_->setWantsLayer(true);
    view_->layer()->setBackgroundColor(Qt::black);
    std::unique_ptr<DrieWereld> wereld;
    if (wat_.soort) {
        wereld = std::make_unique<DrieWereld>(
            *wat_.soort, DrieWereldOpties{.groot = false, .rustig = true},
            DrieWereldBronnen{.klok = server_.clock(), .toeval = toeval_});
        const auto drie = wereld->maakView(vlak);
        drie->setAutoresizingMask(View::WidthSizable | View::HeightSizable);
        drie->onFailure([this] { geenWereld(); });
        view_->addSubview(drie);
    }
    venster_->setContentView(view_);
    andereRegen_.vergeet();
    // What the last content showed may go now.
    regen_.reset();
    wereld_ = std::move(wereld);
    if (!wereld_) vulRegen();
}

void Voorbeeld::vulRegen() {
    regen_ = std::make_unique<MatrixRegen>(MatrixRegenOpties{.maat = QSizeF(vak_->size()),
                                                             .schaal = vak_->devicePixelRatio(),
                                                             .dichtheid = wat_.dichtheid},
                                           server_.clock(), toeval_);
    zetSnelheid();
    view_->layer()->addSublayer(regen_->laag());
}

// One made for a speed and one whose time goes by at that speed fall alike.
void Voorbeeld::zetSnelheid() {
    regen_->zetTempo(static_cast<float>(wat_.snelheid));
}

// Where nothing can draw scenes, it rains in their place.
void Voorbeeld::geenWereld() {
    const auto drie = view_->subviews().front();
    drie->removeFromSuperview();
    wereld_.reset();
    vulRegen();
}

}  // namespace brixtel
