// SPDX-License-Identifier: MIT
#include "BrixtelSaver/SaverInstellingen.h"

namespace brixtel {

namespace {
const QLatin1String kSleutel("keuze");
}

std::unique_ptr<platform::Preferences> SaverInstellingen::opslag() {
    return platform::Preferences::forModule(moduleNaam);
}

SaverKeuze SaverInstellingen::keuze() {
    const auto winkel = opslag();
    const auto ruw = winkel ? winkel->string(kSleutel) : std::nullopt;
    return (ruw ? keuzeUitRuw(*ruw) : std::nullopt).value_or(SaverKeuze::wisselend);
}

void SaverInstellingen::zetKeuze(SaverKeuze keuze) {
    if (const auto winkel = opslag()) winkel->setString(kSleutel, ruweWaarde(keuze));
    // The store is looked up once more and written out, even where there was none to put
    // the value in.
    if (const auto winkel = opslag()) winkel->synchronize();
}

}  // namespace brixtel
