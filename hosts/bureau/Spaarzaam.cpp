// SPDX-License-Identifier: MIT
#include "hosts/bureau/Spaarzaam.h"

#include <utility>

namespace brixtel {

Spaarzaam::Spaarzaam(platform::MediaClock& klok, double tussentijd, std::function<void()> doe)
    : klok_(klok), tussentijd_(tussentijd), doe_(std::move(doe)) {}

void Spaarzaam::vraag() {
    if (rust_.isValid())
        wacht_ = true;
    else
        doe();
}

void Spaarzaam::nu() {
    if (wacht_) doe();
}

void Spaarzaam::vergeet() {
    wacht_ = false;
    rust_ = {};
}

void Spaarzaam::doe() {
    wacht_ = false;
    rust_ = platform::Timer(klok_, {.interval = tussentijd_}, [this] { nu(); });
    doe_();
}

}  // namespace brixtel
