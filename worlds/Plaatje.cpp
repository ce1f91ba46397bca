// SPDX-License-Identifier: MIT
#include "platform/render/cpu/CpuSceneDrawer.h"
#include "worlds/DrieWereld.h"

namespace brixtel {

QImage DrieWereld::plaatje(const PlaatjeOpties& opties) {
    platform::CpuSceneDrawer tekenaar;
    return plaatje(opties, [&](const platform::DrawList& lijst, const Opname& opname) {
        return tekenaar.picture(lijst, opname.maat, opname.schaal);
    });
}

}  // namespace brixtel
