// SPDX-License-Identifier: MIT
#include "platform/render/SceneSnapshot.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

QImage DrieWereld::plaatje(const PlaatjeOpties& opties) {
    const auto snapshot = platform::SceneSnapshot::create();
    if (!snapshot) return {};
    return plaatje(opties, [&](const platform::DrawList& lijst, const Opname& opname) {
        return snapshot->picture(lijst, opname.maat, opname.schaal, {.samples = opname.monsters});
    });
}

}  // namespace brixtel
