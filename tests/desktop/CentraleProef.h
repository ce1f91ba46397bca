// SPDX-License-Identifier: MIT
// A controller on a desktop of the test's own, on a clock moved by hand.
#pragma once

#include <gtest/gtest.h>

#include "desktop/Bovenlaag.h"
#include "desktop/MatrixCentrale.h"
#include "desktop/MatrixView.h"
#include "tests/desktop/Werkruimte.h"
#include "tests/support/WindowSystems.h"

namespace brixtel {

class CentraleProef : public testing::Test {
  protected:
    platform::ManualClock klok{100.0};
    platform::RandomSource toeval{3};
    Werkruimte werkruimte;
    platform::WindowServer server{klok, {.drawer = {}, .system = withoutSystem(klok)}};
    std::vector<platform::Screen> schermen{
        {.name = QStringLiteral("een"), .frame = {0, 0, 400, 300}, .scale = 1.0},
        {.name = QStringLiteral("twee"), .frame = {400, 0, 320, 240}, .scale = 2.0}};
    std::optional<MatrixCentrale> centrale;
    std::vector<bool> gemeld;  // by onZwart

    void SetUp() override {
        centrale.emplace(MatrixCentraleBronnen{
            .server = server, .werkruimte = werkruimte, .toeval = toeval, .schermen = [this] {
                return schermen;
            }});
        centrale->onZwart = [this](bool aan) { gemeld.push_back(aan); };
    }

    // The content of the nth covering window.
    [[nodiscard]] MatrixView& view(std::size_t n = 0) const {
        return dynamic_cast<MatrixView&>(*centrale->zwart()[n].venster->contentView());
    }
    [[nodiscard]] static double getoond(const platform::Layer& laag, double tijd) {
        return laag.shownOpacity(laag.localTime(tijd));
    }
    // Waits for the fades, and a frame more.
    void wachtFade(double duur = 0.25) { klok.advance(duur + 0.05); }
};

}  // namespace brixtel
