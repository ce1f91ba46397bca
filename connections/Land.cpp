// SPDX-License-Identifier: MIT
#include "connections/Land.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace brixtel {

QString Land::naam() const {
    const icu::Locale land("", code.c_str());
    icu::UnicodeString naam;
    land.getDisplayCountry(icu::Locale("nl", "NL"), naam);
    if (land.isBogus() || naam.isEmpty()) return QString::fromStdString(code);
    return QString::fromUtf16(naam.getBuffer(), naam.length());
}

}  // namespace brixtel

std::size_t std::hash<brixtel::Land>::operator()(const brixtel::Land& land) const noexcept {
    std::size_t som = std::hash<std::string>()(land.code);
    for (const double graden : {land.breedte, land.lengte})
        som = som * 31 + std::hash<double>()(graden);  // the same hash for 0.0 and -0.0
    return som;
}
