// SPDX-License-Identifier: MIT
#include "hosts/bureau/GedoseerdeActie.h"

#include <utility>

namespace brixtel {

GedoseerdeActie::GedoseerdeActie(platform::MediaClock& klok, double tussentijd,
                                 std::function<void()> doe)
    : klok_(klok), tussentijd_(tussentijd), doe_(std::move(doe)) {}

void GedoseerdeActie::vraag() {
    if (rust_.isValid())
        wacht_ = true;
    else
        doe();
}

void GedoseerdeActie::nu() {
    if (wacht_) doe();
}

void GedoseerdeActie::vergeet() {
    wacht_ = false;
    rust_ = {};
}

void GedoseerdeActie::doe() {
    wacht_ = false;
    rust_ = platform::Timer(klok_, {.interval = tussentijd_}, [this] { nu(); });
    doe_();
}

}  // namespace brixtel
