// SPDX-License-Identifier: MIT
// landen-maak: writes landen.bin from its sources.
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "platform/files/OutputFile.h"
#include "tools/landen/LandenBouw.h"
#include "tools/landen/LandenSchrijf.h"

namespace {

std::ifstream open(const char* pad) {
    std::ifstream bestand(pad, std::ios::binary);
    if (!bestand) throw std::runtime_error(std::string("niet te lezen: ") + pad);
    return bestand;
}

QByteArray alles(const char* pad) {
    std::ifstream bestand = open(pad);
    std::ostringstream tekst;
    tekst << bestand.rdbuf();
    return QByteArray::fromStdString(tekst.str());
}

template <typename Lezer>
auto lees(const char* pad, Lezer lezer) {
    std::ifstream bestand = open(pad);
    return lezer(bestand);
}

void schrijf(const std::string& pad, std::string_view bytes) {
    if (platform::replaceFile(pad, bytes) != 0)
        throw std::runtime_error("niet te schrijven: " + pad);
}

void maak(char** paden) {
    using namespace brixtel;
    const LandenInhoud inhoud = bouwTabel({.v4 = lees(paden[0], leesAdressen4),
                                           .v6 = lees(paden[1], leesAdressen6),
                                           .iso = leesIso(alles(paden[2])),
                                           .kaart = Kaart(alles(paden[3])),
                                           .zones = lees(paden[4], leesZones),
                                           .correcties = lees(paden[5], leesCorrecties)});
    const auto bytes = pakIn(schrijfLanden(inhoud));
    schrijf(paden[6], {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
    schrijf(paden[6] + std::string(kLandenSom), somVan(bytes));
    std::cout << inhoud.landen.size() << " landen, " << inhoud.v4.size() << " reeksen v4, "
              << inhoud.v6.size() << " reeksen v6, " << bytes.size() << " bytes\n";
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 8) {
        std::cerr << "Gebruik: landen-maak GEOIP GEOIP6 ISO_3166-1.JSON COUNTRIES-10M.JSON "
                     "ZONE.TAB CORRECTIES LANDEN.BIN\n";
        return 2;
    }
    try {
        maak(argv + 1);
    } catch (const std::exception& fout) {
        std::cerr << "landen-maak: " << fout.what() << '\n';
        return 1;
    }
    return 0;
}
