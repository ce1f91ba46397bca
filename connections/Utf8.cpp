// SPDX-License-Identifier: MIT
#include "connections/Utf8.h"

#include <unicode/unistr.h>

#include <algorithm>
#include <cstdint>
#include <limits>

namespace brixtel {

std::string herstelUtf8(std::string_view bytes) {
    const bool ascii = std::all_of(bytes.begin(), bytes.end(),
                                   [](char c) { return static_cast<unsigned char>(c) < 0x80; });
    std::string tekst;
    if (ascii) {
        tekst = bytes;
    } else {
        // ICU counts in 32 bits.
        constexpr std::size_t kMeest = std::numeric_limits<std::int32_t>::max() / 4;
        const auto lengte = static_cast<std::int32_t>(std::min(bytes.size(), kMeest));
        icu::UnicodeString::fromUTF8({bytes.data(), lengte}).toUTF8String(tekst);
    }
    return tekst;
}

}  // namespace brixtel
