// SPDX-License-Identifier: MIT
// Prints the country of each address on the command line by the table's own look-up, or "-";
// then home, the number of countries, and the folder of the table's library.
#include <dlfcn.h>

#include <cstdio>
#include <filesystem>

#include "connections/LandenTabel.h"

int main(int aantal, char** woorden) {
    brixtel::LandenTabel& tabel = brixtel::LandenTabel::gedeeld();
    for (int i = 1; i < aantal; ++i) {
        const auto land = tabel.land(woorden[i]);
        std::printf("%s ", land ? land->code.c_str() : "-");
    }
    const brixtel::Land thuis = tabel.thuis();
    Dl_info info{};
    dladdr(reinterpret_cast<const void*>(&brixtel::LandenTabel::gedeeld), &info);
    const auto map = std::filesystem::canonical(info.dli_fname).parent_path();
    std::printf("%s %g %g %zu %s\n", thuis.code.c_str(), thuis.breedte, thuis.lengte,
                tabel.landen().size(), map.c_str());
    return std::fflush(stdout) == 0 ? 0 : 1;
}
