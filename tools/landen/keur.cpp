// SPDX-License-Identifier: MIT
// landen-keur: prints the faults of a landen.bin; exit status 1 if there are any.
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>

#include "tools/landen/LandenKeur.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "Gebruik: landen-keur LANDEN.BIN\n";
        return 2;
    }
    std::ifstream bestand(argv[1], std::ios::binary);
    if (!bestand) {
        std::cerr << "landen-keur: niet te lezen: " << argv[1] << '\n';
        return 2;
    }
    std::ostringstream inhoud;
    inhoud << bestand.rdbuf();
    const std::string bytes = inhoud.str();
    const auto klachten =
        brixtel::keurLanden({reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()});
    for (const auto& klacht : klachten)
        std::cout << klacht << '\n';
    return klachten.empty() ? 0 : 1;
}
