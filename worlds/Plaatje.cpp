// SPDX-License-Identifier: MIT
// Still pictures of a world.
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

namespace {

constexpr int kMonsters = 4;
constexpr QSizeF kOpwarmMaat(64.0, 40.0);

double verhouding(QSizeF maat) {
    return maat.width() / maat.height();
}

}  // namespace

QImage DrieWereld::plaatje(const PlaatjeOpties& opties) {
    platform::CpuSceneDrawer tekenaar;
    return plaatje(opties, [&](const platform::DrawList& lijst, const Opname& opname) {
        return tekenaar.picture(lijst, opname.maat, opname.schaal);
    });
}

QImage DrieWereld::plaatje(const PlaatjeOpties& opties, const Fotograaf& fotograaf) {
    platform::DrawList lijst;
    const auto neem = [&](double tijd, const Opname& opname) {
        scene_->advance(tijd);
        platform::extract(*scene_, verhouding(opname.maat), lijst);
        return fotograaf(lijst, opname);
    };
    for (const double tijd : {0.0, opties.na / 3.0, 2.0 * opties.na / 3.0})
        neem(tijd, {.maat = kOpwarmMaat, .schaal = 1.0, .monsters = kMonsters});
    return neem(opties.na, {.maat = opties.maat, .schaal = opties.schaal, .monsters = kMonsters});
}

}  // namespace brixtel
