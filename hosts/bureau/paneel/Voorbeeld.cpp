// SPDX-License-Identifier: MIT
#include "hosts/bureau/paneel/Voorbeeld.h"

namespace brixtel {

using platform::View;

Voorbeeld::~Voorbeeld() {
    weg();
}

void Voorbeeld::toon(QWindow& in, const QRect& plek, const Wat& wat) {
    if (plek.isEmpty() || !server_.isConnected()) return weg();
    const bool nieuw = !vak_ || vak_->parent() != &in;
    if (nieuw) {
        weg();
        vak_ = std::make_unique<QWindow>(&in);
        vak_->setFlag(Qt::WindowTransparentForInput);
        vak_->setGeometry(plek);
        vak_->show();
        venster_ = std::make_unique<platform::Window>(
            server_, platform::HostWindow{.id = static_cast<std::uint32_t>(vak_->winId())});
    }
    const bool andereMaat = vak_->size() != plek.size();
    vak_->setGeometry(plek);
    if (!nieuw && !andereMaat && wat == wat_) return;
    wat_ = wat;
    vul();
}

void Voorbeeld::weg() {
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
    // What the last content showed may go now.
    regen_.reset();
    wereld_ = std::move(wereld);
    if (!wereld_) vulRegen();
}

void Voorbeeld::vulRegen() {
    regen_ = std::make_unique<MatrixRegen>(MatrixRegenOpties{.maat = QSizeF(vak_->size()),
                                                             .schaal = vak_->devicePixelRatio(),
                                                             .dichtheid = wat_.dichtheid,
                                                             .snelheid = wat_.snelheid},
                                           server_.clock(), toeval_);
    view_->layer()->addSublayer(regen_->laag());
}

// Where nothing can draw scenes, it rains in their place.
void Voorbeeld::geenWereld() {
    const auto drie = view_->subviews().front();
    drie->removeFromSuperview();
    wereld_.reset();
    vulRegen();
}

}  // namespace brixtel
