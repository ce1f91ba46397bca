// SPDX-License-Identifier: MIT
#include "worlds/BolVoorraad.h"

#include "connections/LandenTabel.h"
#include "worlds/LandKaart.h"

namespace brixtel {

BolVoorraad::BolVoorraad() : wachtrij_("nl.brixtel.voorraad") {
    wachtrij_.async([] { (void)LandenTabel::gedeeld().thuis(); });
    wachtrij_.async([] { (void)LandKaart::gedeeld(); });
}

}  // namespace brixtel
