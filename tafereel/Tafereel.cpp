// SPDX-License-Identifier: MIT
#include "tafereel/Tafereel.h"

#include <utility>

namespace brixtel {

using platform::View;

Tafereel::Tafereel(View& in, TafereelOpties opties, const DrieWereldBronnen& bronnen)
    : view_(in), opties_(std::move(opties)), bronnen_(bronnen) {
    if (opties_.soort)
        toonWereld(*opties_.soort);
    else
        toonRegen();
}

Tafereel::~Tafereel() {
    weg();
}

void Tafereel::toonRegen() {
    regen_ = std::make_unique<MatrixRegen>(opties_.regen(), bronnen_.klok, bronnen_.toeval);
    view_.layer()->addSublayer(regen_->laag());
}

void Tafereel::toonWereld(DrieSoort soort) {
    wereld_ = std::make_shared<DrieWereld>(soort, opties_.wereld, bronnen_);
    scn_ = wereld_->maakView(view_.bounds());
    scn_->setAutoresizingMask(View::WidthSizable | View::HeightSizable);
    scn_->onFailure([this] { geenDrie(); });
    view_.addSubview(scn_);
}

void Tafereel::geenDrie() {
    // The view is the caller, so it is kept until the call returns.
    const auto scn = scn_;
    weg();
    toonRegen();
    if (opties_.bijGeenDrie) opties_.bijGeenDrie();
}

void Tafereel::vernieuwRegen() {
    if (!regen_) return;
    weg();
    toonRegen();
}

void Tafereel::stop() {
    if (regen_) regen_->stop();
    if (!scn_) return;
    scn_->setPlaying(false);
    scn_->setScene(nullptr);
}

void Tafereel::weg() {
    stop();
    if (scn_) scn_->removeFromSuperview();
    scn_.reset();
    if (wereld_) wereld_->actief(false);
    wereld_.reset();
    if (regen_) regen_->laag()->removeFromSuperlayer();
    regen_.reset();
}

}  // namespace brixtel
