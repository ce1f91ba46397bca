// SPDX-License-Identifier: MIT
#include "hosts/saver/WerkGrens.h"

#include <gtest/gtest.h>

#include "platform/time/ProcessUsage.h"

using brixtel::Opdracht;
using brixtel::werkGrens;

namespace {

constexpr QSizeF kKlein(320, 200);
constexpr QSizeF kGroot(1920, 1080);

Opdracht opdracht(Opdracht::Taak taak, bool voorvertoning = false, bool volleSnelheid = false) {
    Opdracht opdracht;
    opdracht.taak = taak;
    opdracht.voorvertoning = voorvertoning;
    opdracht.volleSnelheid = volleSnelheid;
    return opdracht;
}

void isVanVoorbeeld(const Opdracht& opdracht, QSizeF maat, bool voorbeeld) {
    const auto grens = werkGrens(opdracht, maat);
    ASSERT_TRUE(grens);
    const double heel = platform::WorkBudget::shareOf(platform::processorCount());
    EXPECT_EQ(grens->share, voorbeeld ? 0.08 : heel) << maat.width() << 'x' << maat.height();
    EXPECT_EQ(grens->mostPace, voorbeeld ? 8 : 2);
}

}  // namespace

TEST(WerkGrens, APreviewHasEightInAHundredOfOneProcessor) {
    using Taak = Opdracht::Taak;
    isVanVoorbeeld(opdracht(Taak::Gastheer), kKlein, true);
    isVanVoorbeeld(opdracht(Taak::Venster, true), kKlein, true);
    isVanVoorbeeld(opdracht(Taak::Gastheer, false, true), kKlein, true);
    isVanVoorbeeld(opdracht(Taak::Venster, true, true), kKlein, true);
}

TEST(WerkGrens, WhatIsLargeIsNoPreview) {
    using Taak = Opdracht::Taak;
    for (const QSizeF maat : {kGroot, QSizeF(480, 200), QSizeF(200, 360)}) {
        isVanVoorbeeld(opdracht(Taak::Gastheer), maat, false);
        isVanVoorbeeld(opdracht(Taak::Venster, true), maat, false);
    }
    isVanVoorbeeld(opdracht(Taak::Gastheer), {479, 359}, true);
}

TEST(WerkGrens, AnyOtherWindowHasAProcessorUnlessAtFullSpeed) {
    using Taak = Opdracht::Taak;
    isVanVoorbeeld(opdracht(Taak::Venster), kKlein, false);
    isVanVoorbeeld(opdracht(Taak::Schermvullend), kGroot, false);
    for (const Taak taak : {Taak::Venster, Taak::Schermvullend, Taak::Gastheer})
        EXPECT_FALSE(werkGrens(opdracht(taak, false, true), kGroot));
}
