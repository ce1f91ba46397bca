// SPDX-License-Identifier: MIT
#include "hosts/bureau/GedoseerdeActie.h"

#include <utility>

namespace brixtel {

GedoseerdeActie::GedoseerdeActie(platform::MediaClock& klok, double tussentijd,
                                 std::function<void()> doe)
    : klok_(klok), tussentijd_(tussentijd), doe_(std::move(doe)) {}

void GedoseerdeActie::vraag() {
    if (pauzeKlok_.isValid())
        wacht_ = true;
    else
        doe();
}

void GedoseerdeActie::doeNu() {
    if (wacht_) doe();
}

void GedoseerdeActie::vergeet() {
    wacht_ = false;
    pauzeKlok_ = {};
}

void GedoseerdeActie::doe() {
    wacht_ = false;
    pauzeKlok_ = platform::Timer(klok_, {.interval = tussentijd_}, [this] { doeNu(); });
    doe_();
}

}  // namespace brixtel
