// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>
#include <numeric>
#include <vector>

namespace steun {

// A number in the environment, or another.
inline int uitOmgeving(const char* naam, int anders) {
    bool is = false;
    const int gevraagd = qEnvironmentVariableIntValue(naam, &is);
    return is ? gevraagd : anders;
}

// The seeds of one kind of hostility: so many unless the environment asks for another number.
inline std::vector<int> zaden(int aantal) {
    std::vector<int> alle(static_cast<std::size_t>(uitOmgeving("BRIXTEL_VIJANDIG", aantal)));
    std::iota(alle.begin(), alle.end(), uitOmgeving("BRIXTEL_VIJANDIG_VAN", 0));
    return alle;
}

}  // namespace steun
