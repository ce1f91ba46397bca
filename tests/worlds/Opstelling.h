// SPDX-License-Identifier: MIT
// Worlds on a clock that is moved by hand, with a watcher that never measures
// anything and a table without countries.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/scene/DrawList.h"
#include "worlds/DrieWereld.h"

namespace steun {

class WereldOpstelling : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<brixtel::DrieWereld> maak(
        brixtel::DrieSoort soort, const brixtel::DrieWereldOpties& opties = {},
        std::uint64_t zaad = 1) {
        platform::RandomSource toeval(zaad);
        return std::make_unique<brixtel::DrieWereld>(soort, opties,
                                                     brixtel::DrieWereldBronnen{.klok = klok_,
                                                                                .toeval = toeval,
                                                                                .wacht = &wacht_,
                                                                                .landen = &tabel_,
                                                                                .kaart = &kaart_});
    }

    platform::ManualClock klok_;
    brixtel::LandenTabel tabel_{"/nergens/landen.bin"};
    brixtel::VerbindingWacht wacht_{klok_, {.tabel = tabel_, .lsof = "/nergens/lsof"}};
    brixtel::LandKaart kaart_;
};

// The direct children of the root that hold what `kies` says.
template <typename Kies>
std::vector<platform::NodePtr> kinderen(const platform::Node& ouder, Kies kies) {
    std::vector<platform::NodePtr> gekozen;
    for (const platform::NodePtr& kind : ouder.children())
        if (kies(*kind)) gekozen.push_back(kind);
    return gekozen;
}

inline platform::NodePtr cameraVan(const brixtel::DrieWereld& wereld) {
    const auto gevonden =
        kinderen(wereld.scene()->root(), [](const platform::Node& node) { return node.camera(); });
    return gevonden.size() == 1 ? gevonden.front() : nullptr;
}

// With eight bits a component, as it was written down.
inline QColor metAlfa(QColor kleur, double alfa) {
    kleur.setAlphaF(static_cast<float>(alfa));
    return kleur;
}

}  // namespace steun
