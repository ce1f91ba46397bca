// SPDX-License-Identifier: MIT
// The small pictures of the worlds that are stored, as each drawer makes them.
#pragma once

#include <QImage>
#include <array>

#include "platform/render/cpu/CpuSceneDrawer.h"
#include "platform/scene/DrawList.h"
#include "tests/support/SceneSnapshot.h"
#include "tests/worlds/BolLijst.h"

namespace steun {

inline constexpr QSize kReferentieMaat(320, 180);  // pixels, one to the point
inline constexpr double kReferentieTijd = 6.0;     // of the scene, seconds

enum class ReferentieTekenaar { Processor, OpenGl };
inline constexpr std::array kReferentieTekenaars{ReferentieTekenaar::Processor,
                                                 ReferentieTekenaar::OpenGl};

inline QString referentieNaam(brixtel::DrieSoort soort, ReferentieTekenaar tekenaar) {
    return ruweWaarde(soort) + (tekenaar == ReferentieTekenaar::Processor
                                    ? QStringLiteral("-cpu.png")
                                    : QStringLiteral("-gl.png"));
}

// As RGB32; null where there is no OpenGL.
inline QImage referentieBeeld(brixtel::DrieSoort soort, ReferentieTekenaar tekenaar) {
    platform::ManualClock klok;
    platform::RandomSource toeval{1};
    brixtel::LandenTabel landen{"/nergens/landen.bin"};
    brixtel::DrieWereld wereld(soort, {.eigenLijnen = true},
                               {.klok = klok, .toeval = toeval, .landen = &landen});
    if (soort == brixtel::DrieSoort::bol) wereld.zetLijnen(lijnen(24));
    wereld.scene()->advance(kReferentieTijd);
    platform::DrawList lijst;
    platform::extract(*wereld.scene(), 1.0 * kReferentieMaat.width() / kReferentieMaat.height(),
                      lijst);
    if (tekenaar == ReferentieTekenaar::Processor)
        return platform::CpuSceneDrawer().picture(lijst, kReferentieMaat);
    const auto openGl = platform::SceneSnapshot::create();
    return openGl ? openGl->picture(lijst, kReferentieMaat).convertToFormat(QImage::Format_RGB32)
                  : QImage();
}

}  // namespace steun
