// SPDX-License-Identifier: MIT
#include "worlds/BolVoorraad.h"

#include "connections/LandenTabel.h"
#include "worlds/LandKaart.h"

namespace brixtel {

BolVoorraad::BolVoorraad() : tabel_("nl.brixtel.landen"), kaart_("nl.brixtel.kaart") {
    // The search for no address at all only loads the table.
    tabel_.async([] { (void)LandenTabel::gedeeld().land({}); });
}

void BolVoorraad::leesKaart() {
    kaart_.async([] { (void)LandKaart::gedeeld(); });
}

}  // namespace brixtel
